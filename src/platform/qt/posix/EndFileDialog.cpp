#include "platform/qt/EndFileDialog.h"

namespace platform {

void EndFileDialog::operator()(QFileDialog* dialog) const
{
    delete dialog;
}

} // namespace platform
