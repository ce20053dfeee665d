// The window as it is built, its start-up texts, and the choice of the target.
#include "support/WindowTest.h"
#include "window/Targets.h"

namespace {

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
    const auto size = main->size();
    main->resize(900, 900);
    QApplication::processEvents();
    EXPECT_EQ(main->size(), size);
    EXPECT_EQ(main->centralWidget()->size(), QSize(600, 451));

    DropTone(); // all controls show
    QString placed;
    QRegion taken;
    for (const auto& row : kControls) {
        const auto& control = Find<QWidget>(std::string(row.name).c_str());
        const QRect place(control.mapTo(main->centralWidget(), QPoint()), control.size());
        placed += QString("%1,%2 %3x%4").arg(place.x()).arg(place.y()).arg(place.width()).arg(place.height());
        const auto* const label = qobject_cast<const QLabel*>(&control);
        placed += label != nullptr && label->alignment() == Qt::AlignCenter ? " centred; " : "; ";
        EXPECT_TRUE(control.isVisible());
        if (row.name == "Canvas1" || row.name == "Label4") continue; // over the text area, and behind the other prompts
        EXPECT_FALSE(taken.intersects(place)) << row.name;
        taken += place;
    }
    EXPECT_EQ(placed, "20,48 560x29 centred; 20,153 560x246; 222,204 156x156; 373,88 110x22; 486,89 54x20 centred; "
                      "49,88 312x20; 59,20 521x20 centred; 59,411 163x20; 329,411 211x20; 49,104 312x52; ");
    EXPECT_EQ(QApplication::windowIcon().actualSize({64, 64}), QSize(64, 64));
    EXPECT_EQ(Find<QLabel>("LabelDragAndDrop").fontInfo().pixelSize(), 24);
    const auto& radio = Find<QRadioButton>("RadioButtonPokEmul"); // its caption is the longer one
    EXPECT_EQ(radio.fontInfo().pixelSize(), Find<QRadioButton>("RadioButtonPC1600").fontInfo().pixelSize());
    EXPECT_LE(radio.fontMetrics().horizontalAdvance(radio.text()), 211 - 20); // beside its ring
    const auto& area = Find<QPlainTextEdit>("TextAreaCodeAusgabe");
    EXPECT_TRUE(area.isReadOnly() && area.lineWrapMode() == QPlainTextEdit::NoWrap);
    EXPECT_FALSE(area.acceptDrops() || area.viewport()->acceptDrops() ||
                 Find<QLineEdit>("TextFieldAudioAdresse").acceptDrops());
    const auto picture = Find<QWidget>("Canvas1").grab().toImage();
    std::set<QRgb> colours;
    for (int y = picture.height() / 2; y < picture.height(); ++y)
        for (int x = picture.width() / 2; x < picture.width(); ++x)
            colours.insert(picture.pixel(x, y));
    EXPECT_GT(colours.size(), 10U); // it is drawn, and fills its place
}

TEST_F(WindowTest, PictureHasAPixelForEachOfTheScreens)
{
    const auto pixelsOf = [](const QPixmap& picture) {
        return picture.toImage().convertToFormat(QImage::Format_RGB32);
    };
    const auto isSharp = [&] {
        const auto shown = Find<QWidget>("Canvas1").grab();
        auto expected = shown;
        expected.fill(shown.toImage().pixelColor(0, 0));
        QPainter painter(&expected);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(QRect(0, 0, 156, 156), QPixmap(":/Start1@2x.png"));
        painter.end();
        return shown.size() == QSize(234, 234) && pixelsOf(shown) == pixelsOf(expected);
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // begins the program anew
    setenv("QT_SCALE_FACTOR", "1.5", 1);
    EXPECT_EXIT(std::_Exit(isSharp() ? 0 : 1), testing::ExitedWithCode(0), "");
    unsetenv("QT_SCALE_FACTOR");
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
    window.Label2.SetText("(Enter)\r(Enter)"); // and taller than its box
    EXPECT_LE(label.fontMetrics().size(0, label.text()).height(), label.height());
}

TEST_F(WindowTest, ColoursFollowAChangeOfTheme)
{
    window.Show();
    const auto before = QApplication::palette();
    for (const auto* const ground : {"#EFEFEF", "#282828", "#EFEFEF"}) {
        QApplication::setPalette(QPalette(QColor(ground)));
        QApplication::processEvents();
        const auto& listing = Find<QWidget>("TextAreaCodeAusgabe").palette(); // hides its selection without the focus
        EXPECT_EQ(listing.color(QPalette::Base), QApplication::palette().color(QPalette::Base));
        EXPECT_EQ(listing.color(QPalette::Inactive, QPalette::Highlight), listing.color(QPalette::Base));
        EXPECT_EQ(listing.color(QPalette::Inactive, QPalette::HighlightedText), listing.color(QPalette::Text));
        EXPECT_NE(listing.color(QPalette::Active, QPalette::Highlight), listing.color(QPalette::Base));
        const auto ring = Find<QWidget>("RadioButtonPokEmul").grab({0, 0, 18, 20}).toImage(); // isn't chosen
        int contrast = 0;
        for (int x = 0; x < 18; ++x)
            contrast = std::max(contrast, std::abs(qGray(ring.pixel(x, 10)) - QColor(ground).lightness()));
        EXPECT_GT(contrast, 60) << ground;
    }
    QApplication::setPalette(before);
}

TEST_F(WindowTest, ScreenReaderAndTabKeyFindTheControls)
{
    ShowPrompts();
    const auto spoken = [&](const char* name) {
        auto& control = *QAccessible::queryAccessibleInterface(&Find<QWidget>(name));
        return (control.text(QAccessible::Name) + "|" + control.text(QAccessible::Description)).toStdString();
    };
    EXPECT_EQ(spoken("Label2") + spoken("RadioButtonPC1600") + spoken("RadioButtonPokEmul"),
              "(Enter)|PC-1600 Soundfiles|PokEmul Emulator Soundfiles|");
    EXPECT_EQ(spoken("TextAreaCodeAusgabe"), "DEFB listing|");
    EXPECT_EQ(spoken("Canvas1"), "A wave becomes a square wave on a pocket computer|");
    EXPECT_EQ(spoken("TextFieldAudioAdresse"), "Lade-/Startaddresse Audiofile (Hexadezimal):|"
                                               "Mit 32KB Erweiterung > =80C5\nOhne 32KB Erweiterung > =C0C5");
    for (const auto* const reached : {"TextFieldAudioAdresse", "RadioButtonPC1600", "TextAreaCodeAusgabe"}) {
        EXPECT_EQ(QApplication::focusWidget()->objectName(), reached);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
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
    EXPECT_FALSE(main->isVisible()); // the texts are there before the window is
    EXPECT_EQ(App(dialogs).Window.Language, "ger");
    ExpectTarget(false, "Tonfloss PC-1600");
    EXPECT_EQ(window.LabelDragAndDrop.Text(), "Drag .wav file into the window");
    EXPECT_EQ(window.Label3.Text(), "Use sample format 6000 Hz - 11025 Hz / 8 bit depth / PCM / mono");
    EXPECT_TRUE(window.Canvas1.Visible() && window.TextAreaCodeAusgabe.Visible());
    EXPECT_EQ(Prompts(), "");
    EXPECT_FALSE(menuBar.OptionDefBWindow.HasCheckMark());
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
    window.Label3.SetText("no entry is open");
    optionPokEmul.trigger();
    optionSharp.trigger();
    EXPECT_EQ(window.Label3.Text(), "no entry is open");
    std::set<const TargetRow*> byRadio;
    std::set<const TargetRow*> byMenu;
    for (auto* const button : main->findChildren<QRadioButton*>()) {
        button->click();
        byRadio.insert(window.Target());
    }
    for (auto* const item : main->findChildren<QAction*>(QRegularExpression("^OptionAudio"))) {
        item->trigger();
        byMenu.insert(window.Target());
    }
    EXPECT_EQ(byRadio, (std::set<const TargetRow*>(std::begin(kTargets), std::end(kTargets))));
    EXPECT_EQ(byMenu, byRadio);
    optionSharp.trigger();
    for (const auto* const language : {"ger", "eng"}) {
        window.Language = language;
        for (const auto& [choose, toPokEmul, ger, eng] : ways) {
            DropTone();
            choose();
            ExpectTarget(toPokEmul, window.Language == "ger" ? ger : eng);
            // The image that waited for its address was made for the other target.
            EXPECT_EQ(Prompts(), "");
            EXPECT_THAT(window.Label3.Text(), testing::StartsWith(window.Language == "ger" ? "Benutze" : "Use sample"));
            DropTone();
            choose(); // the chosen target once more
            ExpectTarget(toPokEmul, "tone.wav / 204 Bytes / 11.025 kHz");
            EXPECT_TRUE(window.TextFieldAudioAdresse.Visible());
        }
    }
}

} // namespace
