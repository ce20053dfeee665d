// What the window shows while a file is dragged over it. Nothing looks at the file before the drop.
#include "window/Window1.h"

namespace {

constexpr std::string_view kDragText = "Wavefile Format OK!                       ";
static_assert(kDragText.size() == 42); // its blanks count

} // namespace

bool Window1::Event_DragEnter()
{
    mDragInside = true;
    Invalidate();
    return false;
}

bool Window1::Event_DragOver()
{
    mDragInside = false;
    LabelDragAndDrop.SetTextColor(kRed);
    Label3.SetText(kDragText);
    Invalidate();
    return false;
}

void Window1::Event_DragExit()
{
    mDragInside = false;
    LabelDragAndDrop.SetTextColor(kBlack);
    Label3.SetTextColor(kBlack);
    Invalidate();
}
