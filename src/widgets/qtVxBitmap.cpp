#include "widgets/qtVxBitmap.h"

#include <algorithm>
#include <cmath>

namespace vx3 {

void qtVxBitmap::resize(int width, int height, double devicePixelRatio)
{
    width = std::max(width, 0);
    height = std::max(height, 0);
    if (!(devicePixelRatio > 0.0) || !std::isfinite(devicePixelRatio))
        devicePixelRatio = 1.0;
    mWidth = width;
    mHeight = height;
    const QSize deviceSize(int(std::ceil(width * devicePixelRatio)), int(std::ceil(height * devicePixelRatio)));
    if (mImage.size() != deviceSize || mImage.isNull())
        mImage = QImage(deviceSize, QImage::Format_ARGB32_Premultiplied);
    mImage.setDevicePixelRatio(devicePixelRatio);
}

void qtVxBitmap::fill(unsigned colour)
{
    if (!mImage.isNull())
        mImage.fill(QColor::fromRgb(colour | 0xff000000u));
}

}  // namespace vx3
