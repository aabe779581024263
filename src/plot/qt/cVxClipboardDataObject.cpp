#include "plot/qt/cVxClipboardDataObject.h"

namespace vx3 {

QStringList cVxClipboardDataObject::formats() const
{
    QStringList list;
    for (const std::string& format : vxDataObjectVirtualGetFormats())
        list << QString::fromStdString(format);
    list << QString(text_format) << QString(html_format) << QString(wide_text_format);
    return list;
}

bool cVxClipboardDataObject::hasFormat(const QString& mimeType) const
{
    return formats().contains(mimeType);
}

QVariant cVxClipboardDataObject::retrieveData(const QString& mimeType, QMetaType type) const
{
    const std::string format = mimeType.toStdString();
    auto cached = mCache.find(format);
    if (cached == mCache.end()) {
        QByteArray bytes;
        if (format == text_format) {
            bytes = QByteArray::fromStdString(vxDataObjectVirtualGetDataText());
        } else if (format == html_format) {
            bytes = QByteArray::fromStdString(vxDataObjectVirtualGetDataHtml());
        } else if (format == wide_text_format) {
            const std::u16string wide = vxDataObjectVirtualGetDataWideText();
            bytes = QByteArray(reinterpret_cast<const char*>(wide.data()), static_cast<qsizetype>(wide.size() * 2));
        } else {
            std::string data;
            if (!hasFormat(mimeType) || !vxDataObjectVirtualGetData(format, data))
                return QVariant();
            bytes = QByteArray::fromStdString(data);
        }
        cached = mCache.emplace(format, bytes).first;
    }
    // Texts asked for as strings (text(), html()) are UTF-8; everything else goes as bytes.
    if (type.id() == QMetaType::QString && format != wide_text_format)
        return QString::fromUtf8(cached->second);
    return cached->second;
}

}  // namespace vx3
