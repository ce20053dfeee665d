// EndFileDialog.h: ends a dialog so that nothing of it is kept until the next run.
#pragma once

#include <QFileDialog>

namespace platform {

struct EndFileDialog {
    void operator()(QFileDialog* dialog) const;
};

} // namespace platform
