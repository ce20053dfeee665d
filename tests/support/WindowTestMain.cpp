#include "platform/Application.h"

#include <QApplication>
#include <QFont>
#include <QPalette>

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    setenv("QT_QPA_PLATFORM", "offscreen", 1); // no screen is needed
    setenv("LC_ALL", "C.UTF-8", 1);
    setenv("LANGUAGE", "de", 1); // German of the toolkit's own words
    const platform::Application application(argv[0]);
    std::setlocale(LC_MESSAGES, "C");            // and English of the system's
    QApplication::setFont(QFont("DejaVu Sans")); // the same widths and colours wherever the tests run
    QPalette dark(QColor(40, 40, 40));
    dark.setColor(QPalette::HighlightedText, Qt::black);
    QApplication::setPalette(dark);
    return RUN_ALL_TESTS();
}
