// The exception family: a message with a class-specific prefix.
#pragma once

#include <exception>
#include <string>

namespace vx3 {

class cLoggedException : public std::exception {
public:
    explicit cLoggedException(const std::string& text) : mMessage("EXCEPTION : " + text) {}
    const char* what() const noexcept override { return mMessage.c_str(); }
    const std::string& message() const { return mMessage; }
    // Lets a catcher add context before it logs the message.
    void addNoclMessage(const std::string& text) { mMessage += text; }

protected:
    cLoggedException(const std::string& prefix, const std::string& text) : mMessage(prefix + text) {}

private:
    std::string mMessage;
};

#define VX3_PLAIN_EXCEPTION(name)                                                 \
    class name : public cLoggedException {                                        \
    public:                                                                       \
        explicit name(const std::string& text) : cLoggedException(text) {}        \
    }
#define VX3_PREFIXED_EXCEPTION(name, prefix)                                      \
    class name : public cLoggedException {                                        \
    public:                                                                       \
        explicit name(const std::string& text) : cLoggedException(prefix, text) {} \
    }

VX3_PLAIN_EXCEPTION(cBoostException);
VX3_PLAIN_EXCEPTION(cCurveFileExporterException);
VX3_PLAIN_EXCEPTION(cWaveExplorerException);
VX3_PLAIN_EXCEPTION(cAuxSpiceParserException);
VX3_PLAIN_EXCEPTION(cElaborationException);
VX3_PREFIXED_EXCEPTION(cExpressionEvaluationException, "EXPRESSION EVALUATION EXCEPTION : ");
VX3_PREFIXED_EXCEPTION(cSerializerException, "SERIALIZER EXCEPTION : ");
VX3_PREFIXED_EXCEPTION(cSqliteDataBaseException, "SQLITE EXCEPTION : ");

#undef VX3_PLAIN_EXCEPTION
#undef VX3_PREFIXED_EXCEPTION

}  // namespace vx3
