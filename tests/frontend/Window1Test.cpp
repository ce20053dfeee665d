// The window as it is built, its start-up texts, and the choice of the target.
#include "WindowTest.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScreen>

namespace {

using testing::ElementsAre;

TEST(CentredOn, TruncatesTowardZero)
{
    EXPECT_EQ(CentredOn(1920, 600), 660);
    EXPECT_EQ(CentredOn(1080, 451), 314); // not 315
    EXPECT_EQ(CentredOn(450, 451), 0);
    EXPECT_EQ(CentredOn(430, 451), -10);
}

TEST_F(WindowTest, StandsInTheMiddleWithEachControlInItsPlace)
{
    window.Show();
    const auto screen = QApplication::primaryScreen()->size();
    EXPECT_EQ(main->geometry().topLeft(), QPoint((screen.width() - 600) / 2, (screen.height() - 451) / 2));
    main->resize(900, 900);
    QApplication::processEvents();
    EXPECT_EQ(main->centralWidget()->size(), QSize(600, 451));

    DropTone(); // all controls show
    std::vector<std::string> placed;
    QRegion taken;
    for (const auto& row : kControls) {
        const auto& control = Find<QWidget>(std::string(row.name).c_str());
        const QRect place(control.mapTo(main->centralWidget(), QPoint()), control.size());
        const auto* const label = qobject_cast<const QLabel*>(&control);
        placed.push_back(QString("%1 %2,%3 %4x%5 %6")
                             .arg(control.objectName())
                             .arg(place.x())
                             .arg(place.y())
                             .arg(place.width())
                             .arg(place.height())
                             .arg(label && label->alignment() == Qt::AlignCenter ? "centred" : "")
                             .trimmed()
                             .toStdString());
        EXPECT_TRUE(control.isVisible());
        if (row.name == "Canvas1" || row.name == "Label4") continue; // over the text area, and behind the other prompts
        EXPECT_FALSE(taken.intersects(place)) << row.name;
        taken += place;
    }
    EXPECT_THAT(placed, ElementsAre("LabelDragAndDrop 20,48 560x29 centred", "TextAreaCodeAusgabe 20,153 560x246",
                                    "Canvas1 222,204 156x156", "TextFieldAudioAdresse 373,88 110x22",
                                    "Label2 486,89 54x20 centred", "Label1 49,88 312x20", "Label3 59,20 521x20 centred",
                                    "RadioButtonPC1600 59,411 163x20", "RadioButtonPokEmul 329,411 211x20",
                                    "Label4 49,104 312x52"));
    const auto pixels = [&](const char* name) { return Find<QLabel>(name).fontInfo().pixelSize(); };
    EXPECT_GT(pixels("LabelDragAndDrop"), pixels("Label3") + 4); // the big line
    const auto& radio = Find<QRadioButton>("RadioButtonPokEmul"); // its caption is the longer one
    EXPECT_EQ(radio.fontInfo().pixelSize(), Find<QRadioButton>("RadioButtonPC1600").fontInfo().pixelSize());
    EXPECT_LE(radio.fontMetrics().horizontalAdvance(radio.text()), 211 - 20); // beside its ring
    const auto& area = Find<QPlainTextEdit>("TextAreaCodeAusgabe");
    EXPECT_TRUE(area.isReadOnly() && area.lineWrapMode() == QPlainTextEdit::NoWrap);
    EXPECT_FALSE(area.acceptDrops() || area.viewport()->acceptDrops() ||
                 Find<QLineEdit>("TextFieldAudioAdresse").acceptDrops());
    const auto picture = Find<QWidget>("Canvas1").grab().toImage();
    std::set<QRgb> colours;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            colours.insert(picture.pixel(x, y));
    EXPECT_GT(colours.size(), 10U); // it is drawn
}

TEST_F(WindowTest, TextsFitTheirBoxesAndBlackIsTheDesktopsOwnColour)
{
    auto& label = Find<QLabel>("Label2");
    window.Label2.SetText("(Enter now)");
    EXPECT_LE(label.fontMetrics().horizontalAdvance(label.text()), label.width());
    window.Label2.SetTextColor(0xFF0000);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(0xFF, 0, 0));
    window.Label2.SetTextColor(0);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QApplication::palette().color(QPalette::WindowText));
}

class Target : public WindowTest {
protected:
    void ExpectTarget(bool pokEmul, const char* title)
    {
        EXPECT_EQ(window.Title(), title);
        EXPECT_THAT((std::vector{menuBar.OptionAudioPokEmul.HasCheckMark(), window.RadioButtonPokEmul.Value(),
                                 !menuBar.OptionAudioSharp.HasCheckMark(), !window.RadioButtonPC1600.Value()}),
                    testing::Each(pokEmul));
        EXPECT_EQ(Find<QAction>("OptionAudioPokEmul").isChecked(), pokEmul);
    }

    QAction& optionSharp = Find<QAction>("OptionAudioSharp");
    QAction& optionPokEmul = Find<QAction>("OptionAudioPokEmul");
    QRadioButton& radioPC1600 = Find<QRadioButton>("RadioButtonPC1600");
    QRadioButton& radioPokEmul = Find<QRadioButton>("RadioButtonPokEmul");
};

TEST_F(Target, StartsInEnglishForThePC1600)
{
    ExpectTarget(false, "Tonfloss PC-1600");
    EXPECT_EQ(window.LabelDragAndDrop.Text(), "Drag .wav file into the window");
    EXPECT_EQ(window.Label3.Text(), "Use sample format 6000 Hz - 11025 Hz / 8 bit depth / PCM / mono");
    EXPECT_TRUE(window.Canvas1.Visible() && window.TextAreaCodeAusgabe.Visible());
    EXPECT_FALSE(window.TextFieldAudioAdresse.Visible() || window.Label1.Visible() || window.Label2.Visible() ||
                 window.Label4.Visible() || menuBar.OptionDefBWindow.HasCheckMark());
}

TEST_F(Target, MenuAndRadioButtonsStayInStepAndCloseAnOpenEntry)
{
    struct Way {
        std::function<void()> choose;
        bool pokEmul;
        const char* ger;
        const char* eng; // here menu and radio buttons differ
    };
    const Way ways[] = {{[&] { optionPokEmul.trigger(); }, true, "Klangfloss PokEmul", "Tonfloss für PokEmul"},
                        {[&] { radioPC1600.click(); }, false, "Klangfloss PC-1600", "Tonfloss PC-1600"},
                        {[&] { radioPokEmul.click(); }, true, "Klangfloss PokEmul", "Tonfloss PokEmul"},
                        {[&] { optionSharp.trigger(); }, false, "Klangfloss PC-1600", "Tonfloss für PC-1600"}};
    for (const auto* const language : {"ger", "eng"}) {
        window.Language = language;
        for (const auto& [choose, toPokEmul, ger, eng] : ways) {
            DropTone();
            choose();
            ExpectTarget(toPokEmul, window.Language == "ger" ? ger : eng);
            // The image that waited for its address was made for the other target.
            EXPECT_FALSE(window.TextFieldAudioAdresse.Visible() || window.Label4.Visible());
            EXPECT_THAT(window.Label3.Text(), testing::StartsWith(window.Language == "ger" ? "Benutze" : "Use sample"));
            window.Label3.SetText("no entry is open");
            choose(); // the chosen target once more
            ExpectTarget(toPokEmul, window.Language == "ger" ? ger : eng);
            EXPECT_EQ(window.Label3.Text(), "no entry is open");
        }
    }
}

} // namespace
