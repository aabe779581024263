// The store: section ids, files, types, closing, reload and section names.
#include <gtest/gtest.h>

#include "base/cLoggedException.h"
#include "base/cVxLogger.h"
#include "model/cCurvePlotDataFile.h"

using namespace vx3;
using curvePlotProperties::data_double;

namespace {
constexpr uint64_t npos = cCurvePlotDataFile::npos;
}

TEST(DataFileSections, IdsCountUpAndAreNeverReused)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection* a = store.addDataSection("a");
    cCurvePlotDataSection* b = store.addDataSection("b");
    const uint64_t idA = a->getSectionId(), idB = b->getSectionId();
    EXPECT_NE(idA, idB);
    EXPECT_EQ(a->getParentSectionId(), idA) << "a section starts as its own parent";
    EXPECT_EQ(store.findSectionFromId(idB), b);
    ASSERT_TRUE(store.removeDataSection(b));
    EXPECT_EQ(store.findSectionFromId(idB), nullptr);
    const uint64_t idC = store.addDataSection("c")->getSectionId();
    EXPECT_GT(idC, idB) << "the removed id doesn't come back";
    store.clear();
    EXPECT_EQ(store.getNbOfDataSections(), 0u);
    cCurvePlotDataSection* d = store.addDataSection("d");
    EXPECT_GT(d->getSectionId(), idC) << "not even after clear";
    EXPECT_EQ(store.findSectionFromId(idA), nullptr);
    EXPECT_EQ(store.findSectionFromId(0), nullptr);
}

TEST(DataFileSections, RemovingAGroupLeaderMakesFollowersSelfParented)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection* other = store.addDataSection("other");
    cCurvePlotDataSection* leader = store.addDataSection("run1");
    cCurvePlotDataSection* second = store.addDataSection("run2");
    cCurvePlotDataSection* third = store.addDataSection("run3");
    second->setParentSectionId(leader->getSectionId());
    third->setParentSectionId(leader->getSectionId());
    other->setParentSectionId(other->getSectionId());
    ASSERT_TRUE(store.removeDataSection(leader));
    EXPECT_EQ(second->getParentSectionId(), second->getSectionId());
    EXPECT_EQ(third->getParentSectionId(), third->getSectionId()) << "each gets its own id, not the next leader's";
    EXPECT_EQ(other->getParentSectionId(), other->getSectionId());

    // A follower leaving doesn't touch the others.
    cCurvePlotDataSection* head = store.addDataSection("head");
    cCurvePlotDataSection* f1 = store.addDataSection("f1");
    cCurvePlotDataSection* f2 = store.addDataSection("f2");
    f1->setParentSectionId(head->getSectionId());
    f2->setParentSectionId(head->getSectionId());
    ASSERT_TRUE(store.removeDataSection(f1));
    EXPECT_EQ(f2->getParentSectionId(), head->getSectionId());
}

TEST(DataFileSections, IndexCacheAndNameLookups)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection* a = store.addDataSection("tran");
    cCurvePlotDataSection* b = store.addDataSection("ac");
    EXPECT_EQ(store.getDataSectionFromIndex(1), b);
    cCurvePlotDataSection* front = store.insertDataSection(0, "dc");
    EXPECT_EQ(store.getDataSectionFromIndex(0), front) << "the cache follows insertions";
    EXPECT_EQ(store.getDataSectionFromIndex(1), a);
    cCurvePlotDataSection* again = store.addDataSection("tran");
    EXPECT_EQ(store.getDataSectionFromIndex(3), again);
    EXPECT_EQ(store.getDataSectionFromIndex(4), nullptr);
    EXPECT_EQ(store.getDataSectionFromName("tran"), a);
    EXPECT_EQ(store.getDataSectionIndexFromName("tran", 2), 3u);
    EXPECT_EQ(store.getDataSectionIndexFromName("noise"), npos);
    EXPECT_EQ(store.getAllDataSectionFromName("tran").size(), 2u);
    EXPECT_EQ(store.getDataSectionIndexFromCompleteName("ac"), 2u);
    ASSERT_TRUE(store.removeDataSection(a));
    EXPECT_EQ(store.getDataSectionFromIndex(1), b) << "the cache is dropped on removal";
    EXPECT_EQ(store.removeLastDataSection(2), 2u);
    EXPECT_EQ(store.getNbOfDataSections(), 1u);
    EXPECT_EQ(store.getDataSectionFromIndex(0), front);
    EXPECT_EQ(store.removeLastDataSection(5), 1u) << "no more than there are";
    EXPECT_FALSE(store.removeLastDataSection());
}

TEST(DataFileFiles, EntriesAndShortNames)
{
    cCurvePlotDataFile store;
    EXPECT_THROW(store.findDbSupport(""), cLoggedException);
    cFileDbSupport& first = store.findDbSupport("/sim/a/out.raw", fileDbSupport::nutmeg_binary_7);
    cFileDbSupport& same = store.findDbSupport("/sim/a/out.raw");
    EXPECT_EQ(&first, &same) << "found, not created again";
    cFileDbSupport& second = store.findDbSupport("/sim/b/out.raw", fileDbSupport::nutmeg_binary_7);
    EXPECT_EQ(first.shortUniqueName(), "out.raw");
    EXPECT_EQ(second.shortUniqueName(), "out.raw (2)");
    EXPECT_TRUE(store.checkShortFileNameIsUnique("out.raw"));
    EXPECT_EQ(store.findDbSupportPtrShortName("out.raw (2)"), &second);
    EXPECT_EQ(store.findDbSupportPtr("/sim/c/out.raw"), nullptr);
    EXPECT_EQ(store.findDbSupportFromId(second.getId()), &second);
    EXPECT_EQ(store.getDbSupportIndexFromName("/sim/b/out.raw"), 1u);
    EXPECT_TRUE(store.checkIfFileHasAlreadyBeenOpened("../a/./out.raw", "/sim/b"));
    EXPECT_FALSE(store.checkIfFileHasAlreadyBeenOpened("out.raw", "/sim/c"));
    store.insertNewToolBoxSection("calc");
    EXPECT_EQ(store.getNbOfDbFiles(), 3u);
    EXPECT_EQ(store.getNbOfFilesExceptToolBox(), 2u);

    first.setMaxStepIndex(5);
    first.setMaxStepIndex(3);
    EXPECT_EQ(first.getMaxStepIndex(), 5u) << "only raised";

    const uint64_t sectionId = store.addDataSection(second)->getSectionId();
    EXPECT_TRUE(store.removeDbSupport("/sim/b/out.raw"));
    EXPECT_EQ(store.findSectionFromId(sectionId), nullptr) << "its sections go with it";
    EXPECT_EQ(store.findDbSupportPtr("/sim/b/out.raw"), nullptr);
}

TEST(DataFileTypes, InterningGivesOnePointerPerDistinctType)
{
    cCurvePlotDataFile store;
    const cCurvePlotDataType* v1 = store.addType("V", data_double, curvePlotDataType::volt);
    const cCurvePlotDataType* v2 = store.addType("V", data_double, curvePlotDataType::volt);
    EXPECT_EQ(v1, v2);
    EXPECT_EQ(store.addType("V", false, false, curvePlotDataType::volt), v1) << "the complex/precision form too";
    const cCurvePlotDataType* other = store.addType("V", data_double, curvePlotDataType::ampere);
    EXPECT_NE(other, v1);
    EXPECT_NE(store.addType("V", curvePlotProperties::data_float, curvePlotDataType::volt), v1);
    EXPECT_EQ(store.addType(), store.addType());
    EXPECT_EQ(store.addType()->getUnit(), curvePlotDataType::second);
    EXPECT_EQ(store.addType()->getDataType(), data_double);
    const cCurvePlotDataType* complex = store.addComplexType(v1);
    EXPECT_EQ(complex->getDataType(), curvePlotProperties::double_complex);
    EXPECT_EQ(store.addRealType(complex), v1);
    EXPECT_EQ(store.addSinglePrecisionType(complex)->getDataType(), curvePlotProperties::float_complex);
    const cCurvePlotDataType* e1 = store.addType("state", curvePlotProperties::data_enum, curvePlotDataType::no_unit,
                                                 std::vector<std::string>{"idle", "busy"});
    EXPECT_EQ(store.addType("state", curvePlotProperties::data_enum, curvePlotDataType::no_unit,
                            std::vector<std::string>{"idle", "busy"}),
              e1);
    EXPECT_NE(store.addType("state", curvePlotProperties::data_enum, curvePlotDataType::no_unit,
                            std::vector<std::string>{"idle"}),
              e1);
    EXPECT_EQ(store.addConstantStringType("s", 8), store.addConstantStringType("s", 8));
    EXPECT_NE(store.addConstantStringType("s", 8), store.addConstantStringType("s", 9));
    const cCurvePlotDataType* odd = store.addTypeWithUnitString("w", data_double, "furlong/fortnight");
    EXPECT_EQ(odd->getUnitString(), "furlong/fortnight");
    EXPECT_EQ(odd->getUnitStringParts().size(), 2u);
    EXPECT_EQ(store.addTypeWithUnitString("w", data_double, "Volts"), store.addType("w", data_double, curvePlotDataType::volt));
    for (uint64_t i = 0; i < store.getNbOfTypes(); ++i)
        EXPECT_EQ(store.getTypeFromTypeIndex(i)->getTypeIndex(), i) << "type index = position";
    EXPECT_EQ(store.getTypeFromTypeIndex(store.getNbOfTypes()), nullptr);
}

TEST(DataFileClosing, MarkUnmarkClose)
{
    cCurvePlotDataFile store;
    cFileDbSupport& fileA = store.findDbSupport("a.tr0", fileDbSupport::tr0_ascii);
    cFileDbSupport& fileB = store.findDbSupport("b.tr0", fileDbSupport::tr0_ascii);
    cCurvePlotDataSection* a1 = store.addDataSection(fileA);
    cCurvePlotDataSection* a2 = store.addDataSection(fileA);
    cCurvePlotDataSection* b1 = store.addDataSection(fileB);
    const uint64_t idA2 = a2->getSectionId(), idB1 = b1->getSectionId();
    a1->incrementReferenceCounter();
    store.markAllSectionsAndFiles(true);
    store.unmarkUnclosableFilesAndSections();
    EXPECT_FALSE(a1->checkMustClose()) << "in use";
    EXPECT_FALSE(fileA.checkMustClose()) << "its file stays too";
    EXPECT_EQ(store.closeMarkedFilesAndSections(), 2u);
    EXPECT_EQ(store.findSectionFromId(idA2), nullptr);
    EXPECT_EQ(store.findSectionFromId(idB1), nullptr);
    EXPECT_EQ(store.findDbSupportPtr("b.tr0"), nullptr) << "file b went after its last section";
    EXPECT_NE(store.findDbSupportPtr("a.tr0"), nullptr);

    a1->decrementReferenceCounter();
    a1->decrementReferenceCounter();
    EXPECT_EQ(a1->getReferenceCounter(), 0) << "never below 0";
    // A marked file keeps its entry while a section of it stays.
    fileA.setFlagMustClose(true);
    EXPECT_EQ(store.closeMarkedFilesAndSections(), 0u);
    EXPECT_NE(store.findDbSupportPtr("a.tr0"), nullptr);
}

TEST(DataFileClosing, ToolBoxSurvivesClearExceptToolBox)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection* calc = store.insertNewToolBoxSection("calc");
    store.addDataSection(store.findDbSupport("x.csv", fileDbSupport::csv));
    EXPECT_EQ(store.getFirstFileDataSection(), store.getDataSectionFromIndex(1));
    store.clearExceptToolBox();
    ASSERT_EQ(store.getNbOfDataSections(), 1u);
    EXPECT_EQ(store.getDataSectionFromIndex(0), calc);
    EXPECT_EQ(store.getNbOfFilesExceptToolBox(), 0u);
    store.clear();
    EXPECT_EQ(store.getNbOfDataSections(), 0u) << "tool box sections of type 73 are emptied by clear";

    cFileDbSupport& keepBox = store.findDbSupport("keep", fileDbSupport::tool_box_referable);
    cCurvePlotDataSection* used = store.addDataSection("used", &keepBox);
    store.addDataSection("unused", &keepBox);
    used->incrementReferenceCounter();
    store.clear();
    ASSERT_EQ(store.getNbOfDataSections(), 1u);
    EXPECT_EQ(store.getDataSectionFromIndex(0), used) << "type 74 sections in use stay";
}

TEST(DataFileReload, VanishedCurveStaysMarkedAndIsNotFound)
{
    cCurvePlotDataFile store;
    cFileDbSupport& file = store.findDbSupport("run.raw", fileDbSupport::nutmeg_binary_7);
    cCurvePlotDataSection* section = store.addDataSection(file);
    const cCurvePlotDataType* type = store.addType("V", data_double, curvePlotDataType::volt);
    section->addVariable(type, "v(a)");
    section->addVariable(type, "v(b)");
    const double values[] = {1.0, 2.0, 3.0};
    section->getVariable(1).setDoubleValues(values, 3);
    section->setReloadFlags(0);
    EXPECT_FALSE(section->checkSomethingChanged());

    section->initForReload(false);
    EXPECT_TRUE(section->checkMustClose());
    EXPECT_TRUE(section->checkSomethingChanged());
    EXPECT_EQ(section->getReloadFlags() & curvePlotDataSection::reload_new_section, 0u);
    EXPECT_EQ(section->getOldValueCount(1), 3u);
    EXPECT_EQ(section->getVariable(1).getVectorSize(), 3u) << "values kept when not asked to clear";

    // The new content holds only v(a): the reader finds it and unmarks it.
    const uint64_t found = section->findVariableCheckType(type, "v(a)");
    ASSERT_EQ(found, 0u);
    section->getVariable(found).setFlagReloaded();
    section->setFlagMustClose(false);
    section->setReloadFlags(curvePlotDataSection::reload_variables_removed);

    EXPECT_EQ(section->getVariable(1).getState(), curvePlotVariable::must_close);
    EXPECT_EQ(section->findVariableIndex("v(b)"), cCurvePlotDataSection::npos);
    EXPECT_EQ(section->findVariableIndex("b"), cCurvePlotDataSection::npos);
    EXPECT_EQ(section->findVariableIndex("v(a)"), 0u);
    EXPECT_TRUE(section->getVariable(0).checkWasReloaded());
    EXPECT_EQ(store.closeMarkedFilesAndSections(), 0u) << "the section itself survives";
    EXPECT_EQ(store.findSectionFromId(section->getSectionId()), section) << "its id outlives the reload";

    section->initForReload(true);
    EXPECT_EQ(section->getVariable(1).getVectorSize(), 0u) << "values emptied on request";
    EXPECT_EQ(section->getVariable(1).getDbSize(), 0u);
    file.setFlagMustClose(true);
    section->setFlagMustClose(false);
    section->setReloadFlags(0);
    EXPECT_TRUE(section->checkSomethingChanged()) << "its file must close";
}

TEST(DataFileNames, CompleteNamePieces)
{
    cCurvePlotDataFile store;
    cFileDbSupport& file = store.findDbSupport("/x/amp.raw", fileDbSupport::nutmeg_binary_7);
    cCurvePlotDataSection* section = store.addDataSection("Transient Analysis", &file);
    section->setAnalysisType(std::string("tran"));
    EXPECT_EQ(section->completeName(), "amp.raw") << "no alter, no run when both are 0";
    section->setShowSectionName(true);
    EXPECT_EQ(section->completeName(), "amp.raw - Transient Analysis");
    section->setShowAnalysisType(true);
    EXPECT_EQ(section->completeName(), "amp.raw - Transient Analysis - tran");
    section->setAlterIndex(2);
    EXPECT_EQ(section->completeName(), "amp.raw - Transient Analysis - tran - alter 2");
    section->setStepIndex(3);
    EXPECT_EQ(section->completeName(), "amp.raw - Transient Analysis - tran - alter 2 - run 3");
    EXPECT_EQ(file.getMaxStepIndex(), 3u);
    section->pushBackStepParameter("temp", 27.0);
    section->pushBackStepParameter("corner", std::string("ff"));
    EXPECT_EQ(section->completeName(), "amp.raw - Transient Analysis - tran - alter 2 - run 3, 27, ff");
    section->setAdditionalDifferentiatorIndex(4);
    EXPECT_EQ(section->completeName(), "amp.raw - Transient Analysis - tran - alter 2 - run 3, 27, ff - (4)");
    EXPECT_EQ(section->completeName(std::vector<bool>{true, false, false, false, true}), "amp.raw - run 3, 27, ff");
    EXPECT_EQ(section->completeName(std::vector<bool>{false, true, true, true, false}),
              "Transient Analysis - tran - alter 2 - (4)");
    section->setShortName("short");
    EXPECT_EQ(section->completeName(true), "short");
    EXPECT_TRUE(section->checkMultiRunMakesSense());

    cCurvePlotDataSection* loose = store.addDataSection("free");
    EXPECT_EQ(loose->completeName(), "free") << "no file: the section name alone";
    EXPECT_EQ(loose->uniqueShortFileNameOrSectionName(), "free");
    EXPECT_FALSE(loose->checkMultiRunMakesSense());
    loose->pushBackStepParameter("vdd", 1.5);
    EXPECT_EQ(loose->completeName(), "free - 1.5") << "run parameters without a run number";
    loose->setAnalysisType(std::string("my analysis"));
    EXPECT_EQ(loose->getAnalysisType(), curvePlotDataSection::no_analysis);
    loose->setShowAnalysisType(true);
    EXPECT_EQ(loose->completeName(), "free - my analysis - 1.5") << "type 0 shows the free analysis name";
}

TEST(DataFileNames, UniqueNamesAcrossTwoFiles)
{
    cCurvePlotDataFile store;
    cFileDbSupport& f1 = store.findDbSupport("/p/sim.raw", fileDbSupport::nutmeg_binary_7);
    cCurvePlotDataSection* only = store.addDataSection("tran", &f1);
    only->setShowAnalysisType(true);
    only->setStepIndex(4);
    store.attributeUniqueNamesToNewDataSections(0);
    EXPECT_EQ(only->completeName(), "sim.raw") << "one file, one section: flags and run cleared";

    cFileDbSupport& f2 = store.findDbSupport("/q/sim.raw", fileDbSupport::nutmeg_binary_7);
    const uint64_t first = store.getNbOfDataSections();
    cCurvePlotDataSection* tran = store.addDataSection("tran", &f2);
    tran->setAnalysisType(std::string("tran"));
    cCurvePlotDataSection* ac = store.addDataSection("ac", &f2);
    ac->setAnalysisType(std::string("ac"));
    cCurvePlotDataSection* mc1 = store.addDataSection("mc", &f2);
    cCurvePlotDataSection* mc2 = store.addDataSection("mc", &f2);
    cCurvePlotDataSection* mc3 = store.addDataSection("mc", &f2);
    store.attributeUniqueNamesToNewDataSections(first);

    EXPECT_EQ(tran->completeName(), "sim.raw (2) - tran");
    EXPECT_EQ(ac->completeName(), "sim.raw (2) - ac");
    EXPECT_EQ(mc1->completeName(), "sim.raw (2) - mc - run 1") << "colliding sections without runs become runs";
    EXPECT_EQ(mc2->completeName(), "sim.raw (2) - mc - run 2");
    EXPECT_EQ(mc3->completeName(), "sim.raw (2) - mc - run 3");
    EXPECT_EQ(only->completeName(), "sim.raw");
    cVxLogger logger;
    EXPECT_TRUE(store.checkUniqueSectionNames(logger));

    // Runs that already carry a number collide on a differentiator instead.
    cCurvePlotDataSection* r1 = store.addDataSection("mc", &f2);
    r1->setStepIndex(1);
    store.attributeUniqueNamesToNewDataSections(store.getNbOfDataSections() - 1);
    EXPECT_NE(r1->completeName(), mc1->completeName());
    EXPECT_TRUE(store.checkUniqueSectionNames(logger));

    cCurvePlotDataSection* dup = store.addDataSection("ac", &f2);
    dup->setAnalysisType(std::string("ac"));
    dup->setShowSectionName(true);
    EXPECT_FALSE(store.checkUniqueSectionNames(logger)) << "before naming, the two ac sections collide";
    store.makeDataSectionNameUnique(*dup);
    EXPECT_EQ(dup->getAdditionalDifferentiatorIndex(), 1u);
    EXPECT_EQ(dup->completeName(), "sim.raw (2) - ac - (1)");
}

TEST(DataFileNames, StepParametersCorrespond)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection* a = store.addDataSection("mc");
    cCurvePlotDataSection* b = store.addDataSection("mc");
    a->setStepIndex(2);
    b->setStepIndex(2);
    a->pushBackStepParameter("temp", 27.0);
    b->pushBackStepParameter("temp", 27.0 * (1 + 1e-14));
    EXPECT_TRUE(a->getStepParameters().corresponds(b->getStepParameters()));
    a->pushBackStepParameter("z", 1.0, 2.0);
    b->pushBackStepParameter("z", 1.0, 2.5);
    EXPECT_FALSE(a->getStepParameters().corresponds(b->getStepParameters()));
    b->setStepIndex(3);
    EXPECT_FALSE(b->getStepParameters().corresponds(a->getStepParameters()));
}

TEST(DataFileSections, SimilarSectionsAndAnalysisFromSweep)
{
    cCurvePlotDataFile store;
    const cCurvePlotDataType* v = store.addType("V", data_double, curvePlotDataType::volt);
    const cCurvePlotDataType* s = store.addType("s", data_double, curvePlotDataType::second);
    cCurvePlotDataSection* a = store.addDataSection("r1");
    cCurvePlotDataSection* b = store.addDataSection("r2");
    cCurvePlotDataSection* c = store.addDataSection("r3");
    for (cCurvePlotDataSection* section : {a, b, c}) {
        section->addSweepVariable(s, "time", 0);
        section->addVariable(v, "out");
    }
    c->addVariable(v, "extra");
    EXPECT_TRUE(a->checkSectionIsSimilar(*b, true));
    EXPECT_FALSE(a->checkSectionIsSimilar(*c, false));
    EXPECT_EQ(store.findSimilarSectionsAllFiles(*a, true), (std::vector<cCurvePlotDataSection*>{b}));
    b->getVariable(0).setFlagMustClose(true);
    EXPECT_FALSE(a->checkSectionIsSimilar(*b, false)) << "must-close state is compared";

    EXPECT_EQ(a->getAnalysisType(), curvePlotDataSection::undefined_analysis);
    a->setAnalysisTypeFromSweepVariable();
    EXPECT_EQ(a->getAnalysisType(), curvePlotDataSection::tran);
    b->setAnalysisType(curvePlotDataSection::noise);
    b->updateAnlysisTypeFromSweepVariable(curvePlotDataType::hertz);
    EXPECT_EQ(b->getAnalysisType(), curvePlotDataSection::noise) << "an explicit type stays";
    c->updateAnlysisTypeFromSweepVariable(curvePlotDataType::hertz);
    EXPECT_EQ(c->getAnalysisType(), curvePlotDataSection::ac);
}
