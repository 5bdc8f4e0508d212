// SPDX-License-Identifier: Apache-2.0
#include "platform/Graphics.h"

#include "platform/SystemInfo.h"
#include "tests/platform/WindowTestSupport.h"

namespace {

class GraphicsTest : public WindowTest {
  protected:
    // The first 24 bytes say all that is asked of an image.
    CFRef<CGImageRef> Image(std::string const& name, std::string const& bytes) {
        mFolder.Write(name, bytes);
        CFRef<CGDataProviderRef> const provider(
            CGDataProviderCreateWithURL(FileURL(mFolder.Path(name))));
        return CFRef<CGImageRef>(CGImageCreateWithPNGDataProvider(provider, nullptr, false, 0));
    }
    std::string Picture(ControlRef pane) {
        ControlView view;
        DescribeControl(pane, &view);
        return view.picture ? Text(view.picture).substr(mFolder.Path().size()) : "none";
    }

    TemporaryFolder mFolder;
    std::string const mHeader =
        std::string("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR", 16) + std::string("\0\0\0\x18\0\0\x01\0", 8);
};

TEST_F(GraphicsTest, AnImageIsKnownByItsHeader) {
    CFRef<CGImageRef> const image = Image("a.png", mHeader);
    ASSERT_TRUE(image);
    EXPECT_EQ(24U, CGImageGetWidth(image));
    EXPECT_EQ(256U, CGImageGetHeight(image));
    for (auto const& bytes : {mHeader.substr(0, 23), std::string(), "GIF" + mHeader}) {
        EXPECT_FALSE(Image("b.png", bytes));
    }
    EXPECT_EQ(nullptr, CGDataProviderCreateWithURL(nullptr));
    CFRef<CGDataProviderRef> const absent(CGDataProviderCreateWithURL(FileURL("/no/such.png")));
    EXPECT_EQ(nullptr, CGImageCreateWithPNGDataProvider(absent, nullptr, false, 0));
}

// Flipped about the port's height, and the rectangle brought back through the inverse.
TEST_F(GraphicsTest, APaneRemembersThePictureThatWasDrawnInItsPlaceUntilItIsErased) {
    Rect const bounds = {20, 30, 44, 54};
    ControlRef const pane = Pane(bounds);
    ControlRef const behind = Pane();
    CFRef<CGImageRef> const image = Image("a.png", mHeader);
    CGrafPtr const port = GetWindowPort(mWindow);
    CGContextRef context = nullptr;
    ASSERT_EQ(noErr, QDBeginCGContext(port, &context));
    Rect whole = {};
    GetPortBounds(port, &whole);
    CGContextTranslateCTM(context, 0, whole.bottom);
    CGContextScaleCTM(context, 1, -1);
    FloatPoint const origin =
        CGPointApplyAffineTransform({30, 44}, CGAffineTransformInvert(CGContextGetCTM(context)));
    CGContextDrawImage(context, {origin, {24, 24}}, image);
    EXPECT_EQ("/a.png", Picture(pane));
    EXPECT_EQ("none", Picture(behind));
    EXPECT_EQ(noErr, QDEndCGContext(port, &context));
    EXPECT_EQ(nullptr, context);
    EXPECT_EQ(paramErr, QDEndCGContext(port, &context));

    SetPort(port);
    Rect const elsewhere = {20, 30, 44, 55};
    EraseRect(&elsewhere);
    EXPECT_EQ("/a.png", Picture(pane));
    EraseRect(&bounds);
    EXPECT_EQ("none", Picture(pane));
    WindowRef const other = NewWindow();
    SetPort(GetWindowPort(other));
    DisposeWindow(other);
    CGrafPtr current = port;
    GetPort(&current);
    EXPECT_EQ(nullptr, current);
    EXPECT_EQ(paramErr, QDBeginCGContext(current, &context));
}

TEST_F(GraphicsTest, DrawingHappensAtIdleWithTheControlsPortAsTheCurrentOne) {
    ControlRef const pane = Pane();
    static CGrafPtr sPort;
    ControlDrawProc const draw = [](ControlRef, std::int16_t) { GetPort(&sPort); };
    SetPort(nullptr);
    EXPECT_EQ(noErr, SetControlData(pane, 0, "draw"_code, sizeof draw, &draw));
    mFace.Settle();
    EXPECT_EQ(GetWindowPort(mWindow), sPort);
}

TEST_F(GraphicsTest, TheFaceAnswersForDisplayCursorAndBeep) {
    mFace.SetDisplay(1024, 768);
    EXPECT_EQ(768, CGDisplayBounds(CGMainDisplayID()).size.height);
    EXPECT_EQ(0, CGDisplayBounds(CGMainDisplayID() + 1).size.height);
    SetThemeCursor(kThemeWatchCursor);
    SysBeep(1);
    EXPECT_EQ(kThemeWatchCursor, mFace.Cursor());
    EXPECT_EQ(1, mFace.TakeBeeps());
}

TEST_F(GraphicsTest, TheSystemTellsItsVersion) {
    std::int32_t number = 9;
    EXPECT_EQ(noErr, Gestalt(gestaltSystemVersionMinor, &number));
    EXPECT_EQ(kDefaultSystemMinorVersion, number);
    EXPECT_EQ(gestaltUndefSelectorErr, Gestalt("none"_code, &number));
    EXPECT_EQ(0, number);
}

}  // namespace
