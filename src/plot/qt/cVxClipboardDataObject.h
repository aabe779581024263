// Mime data whose texts are made when a reader asks for them, not when the drag or copy
// starts: a table of curve values can be large, and most drops want only the curve list.
#pragma once

#include <QMimeData>
#include <map>
#include <string>
#include <vector>

namespace vx3 {

class cVxClipboardDataObject : public QMimeData {
public:
    static constexpr const char* text_format = "text/plain";
    static constexpr const char* html_format = "text/html";
    static constexpr const char* wide_text_format = "text/plain;charset=utf-16";

    QStringList formats() const override;
    bool hasFormat(const QString& mimeType) const override;

    // The own formats served besides the three texts, most specific first.
    virtual std::vector<std::string> vxDataObjectVirtualGetFormats() const = 0;
    // The bytes of an own format; false when there is nothing to give.
    virtual bool vxDataObjectVirtualGetData(const std::string& format, std::string& data) const = 0;
    virtual std::string vxDataObjectVirtualGetDataText() const = 0;
    virtual std::string vxDataObjectVirtualGetDataHtml() const = 0;
    virtual std::u16string vxDataObjectVirtualGetDataWideText() const = 0;

protected:
    QVariant retrieveData(const QString& mimeType, QMetaType type) const override;

private:
    // Made once per format on first request.
    mutable std::map<std::string, QByteArray> mCache;
};

}  // namespace vx3
