// An off-screen image that a plot draws into and then copies to the screen in one go. Sizes are
// in device-independent pixels; the image itself has width * ratio device pixels, so that drawing
// stays sharp on high-DPI screens.
#pragma once

#include <QImage>

namespace vx3 {

class qtVxBitmap {
public:
    qtVxBitmap() = default;
    qtVxBitmap(int width, int height, double devicePixelRatio = 1.0) { resize(width, height, devicePixelRatio); }

    // Reallocates only when the device size changes; the content is undefined afterwards.
    void resize(int width, int height, double devicePixelRatio = 1.0);
    void fill(unsigned colour);  // 0xrrggbb

    int getWidth() const { return mWidth; }
    int getHeight() const { return mHeight; }
    double getDevicePixelRatio() const { return mImage.isNull() ? 1.0 : mImage.devicePixelRatio(); }
    bool checkIsNull() const { return mImage.isNull(); }
    QImage& getImage() { return mImage; }
    const QImage& getImage() const { return mImage; }

private:
    QImage mImage;
    int mWidth = 0;
    int mHeight = 0;
};

}  // namespace vx3
