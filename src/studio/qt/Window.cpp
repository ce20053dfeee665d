#include "studio/qt/Window.h"

#include "platform/qt/DraggedFile.h"
#include "platform/qt/Paths.h"
#include "studio/qt/FileDialogs.h"
#include "studio/qt/Panel.h"
#include "studio/qt/SendDialog.h"
#include "studio/qt/SpectrogramView.h"
#include "studio/qt/Texts.h"
#include "studio/qt/WaveView.h"

#include <QApplication>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPromise>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QSlider>
#include <QSplitter>
#include <QStyle>
#include <QToolButton>

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

namespace studio {
namespace {

constexpr std::chrono::milliseconds kTick{33};
constexpr int kScrollSteps = 10000; // of the scroll bar, for the whole file

/// Bytes that are no UTF-8 are shown as the toolkit does, and a composed name has one character for each letter.
std::string ComposedNameOf(const std::filesystem::path& path)
{
    return platform::FromPath(path.filename()).normalized(QString::NormalizationForm_C).toStdString();
}

QLabel* MakeText()
{
    auto* const text = new QLabel;
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    return text;
}

} // namespace

Window::Window(Language language, const std::filesystem::path& temporary)
    : language_(language),
      studio_({.wake =
                   [this] {
                       QMetaObject::invokeMethod(
                           this,
                           [this] {
                               if (studio_.Pump()) Refresh();
                           },
                           Qt::QueuedConnection);
                   },
               .nameOf = ComposedNameOf,
               .temporary = temporary})
{
    setAcceptDrops(true);
    timeline_.seek = [this](double second) { Seek(second); };
    timeline_.zoomed = [this] { ShowZoom(); };
    panel_ = new Panel(studio_, language,
                       {.changed = [this] { Refresh(); },
                        .save = [this](Output output) { AskToSave(output); },
                        .send = [this] { AskToSend(); }});
    side_ = new QScrollArea;
    side_->setWidget(panel_);
    side_->setWidgetResizable(true);
    side_->setFrameShape(QFrame::NoFrame);
    side_->setFocusPolicy(Qt::NoFocus);

    auto* const left = new QVBoxLayout;
    left->addWidget(MakePictures(), 1);
    left->addWidget(MakeTransport());
    auto* const middle = new QHBoxLayout;
    middle->addLayout(left, 1);
    middle->addWidget(side_);
    auto* const central = new QWidget;
    auto* const column = new QVBoxLayout(central);
    column->addWidget(MakeTop());
    column->addWidget(MakeNotices());
    column->addLayout(middle, 1);
    setCentralWidget(central);
    MakeShortcuts();
    tick_.setInterval(kTick);
    connect(&tick_, &QTimer::timeout, this, [this] { Tick(); });
    wave_->setFocus();
    Refresh();
}

Window::~Window()
{
    delete takeCentralWidget(); // its parts know the studio, and a field that loses the focus tells it
}

QString Window::Say(const MessagePair& pair) const
{
    return Text(pair, language_);
}

QToolButton* Window::MakeTool(const MessagePair& text, const MessagePair& description, const QString& symbol,
                              std::function<void()> action)
{
    auto* const button = new QToolButton;
    button->setText(symbol);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    Describe(*button, Say(text), Say(description));
    connect(button, &QToolButton::clicked, this, std::move(action));
    return button;
}

QWidget* Window::MakeTop()
{
    auto* const top = new QWidget;
    auto* const row = new QHBoxLayout(top);
    row->setContentsMargins(0, 0, 0, 0);
    auto* const open = new QPushButton(Say({.ger = "Öffnen …", .eng = "Open…"}));
    Describe(*open, Say({.ger = "Öffnen", .eng = "Open"}),
             Say({.ger = "Einen Klang oder eine Klangdatei öffnen (Strg+O)",
                  .eng = "Open a sound or a sound file (Ctrl+O)"}));
    open->setFocusPolicy(Qt::TabFocus);
    connect(open, &QPushButton::clicked, this, [this] { AskToOpen(); });
    name_ = new QLabel;
    name_->setTextFormat(Qt::PlainText);
    name_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    row->addWidget(open);
    row->addWidget(name_, 1);
    row->addWidget(MakeTool({.ger = "Tasten", .eng = "Keys"},
                            {.ger = "Welche Tasten es gibt (F1)", .eng = "What the keys are (F1)"}, "F1",
                            [this] { ShowKeys(); }));
    return top;
}

QWidget* Window::MakeNotices()
{
    auto* const all = new QWidget;
    auto* const column = new QVBoxLayout(all);
    column->setContentsMargins(0, 0, 0, 0);
    const auto make = [&](std::function<void()> dismiss) {
        auto* const frame = new QFrame;
        frame->setFrameShape(QFrame::StyledPanel);
        auto* const row = new QHBoxLayout(frame);
        row->setContentsMargins(6, 3, 3, 3);
        auto* const symbol = new QLabel;
        auto* const text = MakeText();
        text->setTextInteractionFlags(Qt::TextSelectableByMouse);
        row->addWidget(symbol);
        row->addWidget(text, 1);
        row->addWidget(MakeTool({.ger = "Schließen", .eng = "Dismiss"},
                                {.ger = "Diese Meldung schließen", .eng = "Take this message away"}, "✕",
                                std::move(dismiss)));
        frame->hide();
        column->addWidget(frame);
        return NoticeRow{.frame = frame, .symbol = symbol, .text = text};
    };
    for (const auto slot : {Notice::Slot::File, Notice::Slot::Work, Notice::Slot::Saving})
        notices_.at(static_cast<std::size_t>(slot)) = make([this, slot] {
            studio_.Dismiss(slot);
            Refresh();
        });
    const auto unexpected = make([this] { unexpected_->hide(); });
    unexpected_ = unexpected.frame;
    unexpectedText_ = unexpected.text;
    return all;
}

QWidget* Window::MakePictures()
{
    wave_ = new WaveView(studio_, timeline_, [this] { Refresh(); });
    wave_->setAccessibleName(Say({.ger = "Wellenform", .eng = "Waveform"}));
    spectrograms_ = {
        new SpectrogramView(Heard::Source, Now(), timeline_, Say({.ger = "Ausschnitt", .eng = "Part"})),
        new SpectrogramView(Heard::Machine, Now(), timeline_, Say({.ger = "Rechner", .eng = "Machine"})),
    };
    hint_ = MakeText();
    hint_->setAlignment(Qt::AlignCenter);
    hint_->setText(Say({.ger = "Zieh einen Klang hierher, oder öffne einen: ein Lied, eine Stimme, ein Geräusch.",
                        .eng = "Drop a sound here, or open one: a song, a voice, a noise."}));
    auto* const hintColumn = new QVBoxLayout(wave_);
    hintColumn->addWidget(hint_);
    scroll_ = new QScrollBar(Qt::Horizontal);
    scroll_->setLayoutDirection(Qt::LeftToRight);
    scroll_->setAccessibleName(Say({.ger = "Gezeigter Teil der Datei", .eng = "Part of the file that is shown"}));
    connect(scroll_, &QScrollBar::valueChanged, this, [this](int value) {
        const auto& zoom = timeline_.zoom;
        timeline_.zoom.Move(zoom.End() * value / kScrollSteps - zoom.Shown().from);
        ShowZoom();
    });
    auto* const pictures = new QWidget;
    auto* const column = new QVBoxLayout(pictures);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3);
    column->addWidget(wave_, 4);
    column->addLayout(MakeZoom());
    for (auto* const picture : spectrograms_)
        column->addWidget(picture, 3);
    return pictures;
}

QLayout* Window::MakeZoom()
{
    auto* const row = new QHBoxLayout;
    row->setSpacing(2);
    row->addWidget(scroll_, 1);
    row->addWidget(MakeTool({.ger = "Näher", .eng = "Zoom in"}, {.ger = "Näher hin (+)", .eng = "Look closer (+)"}, "+",
                            [this] { ZoomBy(0.5); }));
    row->addWidget(MakeTool({.ger = "Weiter weg", .eng = "Zoom out"},
                            {.ger = "Weiter weg (−)", .eng = "Look from further away (−)"}, "−",
                            [this] { ZoomBy(2); }));
    row->addWidget(MakeTool({.ger = "Ausschnitt zeigen", .eng = "Show the part"},
                            {.ger = "Den Ausschnitt zeigen (9)", .eng = "Show the part (9)"},
                            Say({.ger = "Ausschnitt", .eng = "Part"}), [this] { ShowPart(); }));
    row->addWidget(MakeTool({.ger = "Alles zeigen", .eng = "Show all"},
                            {.ger = "Die ganze Datei zeigen (0)", .eng = "Show the whole file (0)"},
                            Say({.ger = "Alles", .eng = "All"}), [this] { ShowAll(); }));
    return row;
}

QPushButton* Window::MakePlay(Heard heard)
{
    auto* const button = new QPushButton;
    button->setFocusPolicy(Qt::TabFocus);
    button->setCheckable(true);
    connect(button, &QPushButton::clicked, this, [this, heard] { PlayOrStop(heard); });
    return button;
}

QWidget* Window::MakeTransport()
{
    auto* const transport = new QWidget;
    auto* const row = new QHBoxLayout;
    for (const auto heard : {Heard::Source, Heard::Machine})
        row->addWidget(play_.at(static_cast<std::size_t>(heard)) = MakePlay(heard));
    repeat_ = MakeTool({.ger = "Wiederholen", .eng = "Repeat"},
                       {.ger = "Von vorn, wenn es zu Ende ist (R)", .eng = "Begin again at the end (R)"}, "⟳",
                       [this] { listening_.SetRepeat(repeat_->isChecked()); });
    repeat_->setCheckable(true);
    repeat_->setShortcut(Qt::Key_R);
    row->addWidget(repeat_);
    time_ = new QLabel;
    time_->setAccessibleName(Say({.ger = "Stelle", .eng = "Place"}));
    row->addWidget(time_);
    row->addStretch();
    volume_ = new QSlider(Qt::Horizontal);
    volume_->setRange(0, 100);
    volume_->setValue(25); // a square wave is loud
    volume_->setMinimumWidth(60);
    volume_->setMaximumWidth(120);
    volume_->setFocusPolicy(Qt::TabFocus);
    Describe(*volume_, Say({.ger = "Lautstärke", .eng = "Volume"}), Say({.ger = "Lautstärke", .eng = "Volume"}));
    connect(volume_, &QSlider::valueChanged, this, [this](int percent) { listening_.SetVolume(percent / 100.0); });
    listening_.SetVolume(volume_->value() / 100.0);
    row->addWidget(volume_, 1);
    device_ = MakeText();
    device_->hide();
    auto* const column = new QVBoxLayout(transport);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(row);
    column->addWidget(device_);
    return transport;
}

void Window::MakeShortcuts()
{
    const auto add = [this](const QKeySequence& keys, auto action) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
    };
    add(QKeySequence::Open, [this] { AskToOpen(); });
    add(Qt::CTRL | Qt::Key_Q, [this] { close(); });
    add(Qt::Key_F1, [this] { ShowKeys(); });
    add(Qt::Key_1, [this] { PlayOrStop(Heard::Source); });
    add(Qt::Key_2, [this] { PlayOrStop(Heard::Machine); });
}

void Window::Open(const std::filesystem::path& file)
{
    studio_.Open(file);
    Refresh();
}

void Window::Tell(const QString& text)
{
    unexpectedText_->setText(text);
    unexpected_->show();
}

void Window::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->source() != nullptr || !platform::DraggedPath(event->mimeData())) return;
    const auto possible = event->possibleActions();
    if ((possible & (Qt::CopyAction | Qt::LinkAction)) == 0) return; // a move would delete the file
    event->setDropAction((possible & Qt::CopyAction) != 0 ? Qt::CopyAction : Qt::LinkAction);
    event->accept();
}

void Window::dropEvent(QDropEvent* event)
{
    const auto file = platform::DraggedPath(event->mimeData());
    const auto possible = event->possibleActions();
    if (!file || (possible & (Qt::CopyAction | Qt::LinkAction)) == 0) return;
    event->setDropAction((possible & Qt::CopyAction) != 0 ? Qt::CopyAction : Qt::LinkAction);
    event->accept();
    Open(*file);
}

void Window::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Space: return PlayOrStop(listening_.Selected());
    case Qt::Key_Plus:
    case Qt::Key_Equal: return ZoomBy(0.5);
    case Qt::Key_Minus: return ZoomBy(2);
    case Qt::Key_0: return ShowAll();
    case Qt::Key_9: return ShowPart();
    default: QMainWindow::keyPressEvent(event);
    }
}

void Window::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    // Somebody who plugs an adapter in comes back to the window behind it.
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) LookForPorts();
}

void Window::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    const auto wanted = panel_->minimumSizeHint().width() + side_->verticalScrollBar()->sizeHint().width() + 2;
    side_->setFixedWidth(std::min(wanted, width() * 2 / 5)); // the pictures have the more
}

void Window::Refresh()
{
    const auto& state = Now();
    listening_.Take(state.result);
    RefreshTop();
    RefreshNotices();
    RefreshPictures();
    panel_->Refresh();
    RefreshListening();
    if (state.reading.isGoing || state.preparing.isGoing || state.saving.isGoing) tick_.start();
}

void Window::RefreshTop()
{
    const auto& state = Now();
    QString text;
    if (state.file) {
        const auto& file = *state.file;
        text = Text(file.name) + "  ·  " + Text(TimeText(file.seconds, 1));
        if (!file.saved) text += QString("  ·  %1 Hz").arg(file.rate);
        if (state.reading.isGoing)
            text += "  ·  " + Say({.ger = "wird gelesen: %1 %", .eng = "being read: %1 %"})
                                  .arg(static_cast<int>(state.reading.done * 100));
    }
    if (!state.opening.empty())
        text = Say({.ger = "%1 wird geöffnet …", .eng = "Opening %1…"}).arg(Text(state.opening));
    name_->setText(text);
    const auto name = state.file ? Text(state.file->name) + " – " : QString();
    setWindowTitle(name + "Tonfloss Studio");
}

void Window::RefreshNotices()
{
    for (std::size_t i = 0; i < notices_.size(); ++i) {
        const auto& notice = Now().notices.at(i);
        auto& row = notices_.at(i);
        if (notice) {
            const auto text = Text(TextOf(*notice, language_));
            const auto* const event = std::get_if<Event>(&notice->what);
            const bool isGood = event != nullptr && (*event == Event::Saved || *event == Event::AlreadyPrepared ||
                                                     *event == Event::Stopped);
            const auto symbol = isGood ? QStyle::SP_MessageBoxInformation : QStyle::SP_MessageBoxWarning;
            const auto pixels = style()->pixelMetric(QStyle::PM_SmallIconSize);
            row.symbol->setPixmap(style()->standardIcon(symbol).pixmap(pixels));
            row.text->setText(text);
            row.text->setAccessibleName(text);
        }
        row.frame->setVisible(notice.has_value());
    }
}

void Window::RefreshPictures()
{
    const auto& state = Now();
    auto& zoom = timeline_.zoom;
    const auto path = state.file ? state.file->path : std::filesystem::path();
    if (std::exchange(opened_, path) != path) {
        zoom.Reset();
        timeline_.playing.reset();
    }
    zoom.SetEnd(state.file ? state.file->axis : 0);
    hint_->setVisible(!state.file);
    wave_->ShowAnew(Text(WaveformText(state, language_)));
    const auto pictures = Text(PicturesText(state, language_));
    for (auto* const picture : spectrograms_)
        picture->ShowAnew(pictures);
    spectrograms_.front()->setVisible(!state.file || !state.file->saved);
    ShowZoom();
}

void Window::ShowZoom()
{
    const auto& zoom = timeline_.zoom;
    if (zoom.Shown().Length() > 0)
        studio_.LookAt(zoom.Shown(), static_cast<std::size_t>(std::max(1.0, wave_->width() * devicePixelRatioF())));
    const QSignalBlocker quiet(scroll_);
    const auto part = zoom.End() > 0 ? kScrollSteps / zoom.End() : 0;
    const auto page = zoom.End() > 0 ? static_cast<int>(zoom.Shown().Length() * part) : kScrollSteps;
    scroll_->setRange(0, kScrollSteps - page);
    scroll_->setPageStep(std::max(1, page));
    scroll_->setSingleStep(std::max(1, page / 10));
    scroll_->setValue(static_cast<int>(zoom.Shown().from * part));
    scroll_->setEnabled(!zoom.IsWhole());
    wave_->update();
    for (auto* const picture : spectrograms_)
        picture->update();
}

void Window::RefreshListening()
{
    const auto status = listening_.Now();
    for (const auto heard : {Heard::Source, Heard::Machine}) {
        auto& button = *play_.at(static_cast<std::size_t>(heard));
        const bool isThis = status.isPlaying && listening_.Selected() == heard;
        const auto name = heard == Heard::Source ? Say({.ger = "Ausschnitt", .eng = "Part"})
                                                 : Say({.ger = "Rechner", .eng = "Machine"});
        const auto text =
            isThis ? Say({.ger = "%1 anhalten", .eng = "Stop %1"}) : Say({.ger = "%1 spielen", .eng = "Play %1"});
        button.setText((isThis ? "■ " : "▶ ") + name); // as text they have the colour of the theme
        button.setChecked(isThis);
        button.setEnabled(listening_.CanPlay(heard));
        button.setVisible(heard == Heard::Machine || !Now().file || !Now().file->saved);
        Describe(button, text.arg(name),
                 heard == Heard::Source ? Say({.ger = "Der Ausschnitt, wie er ist (1; Leertaste hält an)",
                                               .eng = "The part as it is (1; Space stops)"})
                                        : Say({.ger = "Was der Rechner spielt (2; Leertaste hält an)",
                                               .eng = "What the machine plays (2; Space stops)"}));
    }
    if (status.isPlaying) {
        place_ = status.second;
        tick_.start();
    }
    if (listening_.CanPlay(Heard::Machine)) {
        timeline_.playing =
            std::clamp(status.isPlaying ? status.second : place_, listening_.Range().from, listening_.Range().to);
        time_->setText(Text(TimeText(*timeline_.playing, 1)));
    } else {
        timeline_.playing.reset();
        time_->clear();
    }
    device_->setVisible(!status.failure.empty());
    device_->setText(Say({.ger = "Kein Ton: %1", .eng = "No sound: %1"}).arg(Text(status.failure)));
}

/// While something plays the line runs; while something goes on its bar may have to come.
void Window::Tick()
{
    RefreshListening();
    wave_->update();
    for (auto* const picture : spectrograms_)
        picture->update();
    const auto& state = Now();
    const bool goesOn = state.reading.isGoing || state.preparing.isGoing || state.saving.isGoing;
    if (goesOn) panel_->Refresh();
    if (!goesOn && !listening_.Now().isPlaying) tick_.stop();
}

void Window::AskToOpen()
{
    const auto folder = Now().file ? Now().file->path.parent_path() : std::filesystem::path();
    AskForFileToOpen(*this, language_, folder, [this](const auto& file) { Open(file); });
}

void Window::AskToSave(Output output)
{
    if (!studio_.CanSave(output)) return;
    AskForFileToSave(*this, language_, output, studio_.SuggestedFile(output),
                     [this, output](const auto& file, files::Existing existing) {
                         studio_.Save(output, file, existing);
                         Refresh();
                     });
}

void Window::AskToSend()
{
    const auto parcel = studio_.ForTheMachine();
    if (parcel && !ports_.empty()) (new SendDialog(*this, language_, *parcel, ports_))->open();
}

void Window::LookForPorts()
{
    QPromise<std::vector<serial::Port>> promise;
    promise.start();
    promise.future().then(this, [this](const std::vector<serial::Port>& ports) {
        ports_ = ports;
        panel_->SetHasPort(!ports.empty());
    });
    std::thread([promise = std::move(promise)]() mutable {
        try {
            promise.addResult(serial::Ports());
        } catch (const std::exception& /*failure*/) {
            promise.addResult(std::vector<serial::Port>()); // what can't be listed can't be offered
        }
        promise.finish();
    }).detach();
}

void Window::PlayOrStop(Heard heard)
{
    const bool isPlaying = listening_.Now().isPlaying;
    const bool isOther = listening_.Selected() != heard;
    if (listening_.CanPlay(heard)) {
        listening_.Select(heard);
        if (!isPlaying)
            listening_.Play(place_);
        else if (!isOther)
            listening_.Stop();
    }
    tick_.start();
    RefreshListening();
}

void Window::Seek(double second)
{
    if (!listening_.CanPlay(Heard::Machine)) return;
    const auto range = listening_.Range();
    place_ = std::clamp(second, range.from, range.to);
    if (listening_.Now().isPlaying) listening_.Play(place_);
    RefreshListening();
    ShowZoom();
}

void Window::ZoomBy(double factor)
{
    auto& zoom = timeline_.zoom;
    if (zoom.End() <= 0) return;
    const auto& shown = zoom.Shown();
    const auto& part = Now().part;
    const auto isSeen = [&](double second) { return second >= shown.from && second <= shown.to; };
    const auto middle = (shown.from + shown.to) / 2;
    const auto around = timeline_.playing && isSeen(*timeline_.playing) ? *timeline_.playing
                        : isSeen(part.from)                             ? part.from
                                                                        : middle;
    zoom.By(factor, around);
    ShowZoom();
}

void Window::ShowPart()
{
    const auto& part = Now().part;
    const auto margin = part.Length() / 20;
    if (part.Length() > 0) timeline_.zoom.Show({.from = part.from - margin, .to = part.to + margin});
    ShowZoom();
}

void Window::ShowAll()
{
    timeline_.zoom.Show({.from = 0, .to = timeline_.zoom.End()});
    ShowZoom();
}

void Window::ShowKeys()
{
    auto* const box = new QMessageBox(this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(Say({.ger = "Tasten", .eng = "Keys"}));
    box->setTextFormat(Qt::RichText);
    const std::pair<MessagePair, MessagePair> keys[] = {
        {{.ger = "Strg+O", .eng = "Ctrl+O"}, {.ger = "öffnen", .eng = "open"}},
        {{.ger = "Strg+S", .eng = "Ctrl+S"}, {.ger = "Klangdatei speichern", .eng = "save the sound file"}},
        {{.ger = "Strg+Umschalt+S", .eng = "Ctrl+Shift+S"}, {.ger = "Aufnahme speichern", .eng = "save the recording"}},
        {{.ger = "Strg+Z", .eng = "Ctrl+Z"},
         {.ger = "letzte Änderung des Ausschnitts zurück", .eng = "undo the last change of the part"}},
        {{.ger = "Leertaste", .eng = "Space"}, {.ger = "spielen und anhalten", .eng = "play and stop"}},
        {{.ger = "1, 2", .eng = "1, 2"},
         {.ger = "den Ausschnitt, den Rechner hören", .eng = "hear the part, the machine"}},
        {{.ger = "R", .eng = "R"}, {.ger = "wiederholen", .eng = "repeat"}},
        {{.ger = "← →", .eng = "← →"}, {.ger = "Ausschnitt verschieben", .eng = "move the part"}},
        {{.ger = "Umschalt+← →", .eng = "Shift+← →"},
         {.ger = "sein gewähltes Ende verschieben", .eng = "move its end that is chosen"}},
        {{.ger = "↑ ↓", .eng = "↑ ↓"}, {.ger = "Anfang oder Ende wählen", .eng = "choose start or end"}},
        {{.ger = "Pos1, Ende", .eng = "Home, End"},
         {.ger = "ganz nach vorn, nach hinten; auch mit Umschalt",
          .eng = "to the beginning, to the end; with Shift, too"}},
        {{.ger = "Strg dazu", .eng = "with Ctrl"}, {.ger = "feine Schritte", .eng = "fine steps"}},
        {{.ger = "+ −", .eng = "+ −"}, {.ger = "näher, weiter weg", .eng = "look closer, from further away"}},
        {{.ger = "9, 0", .eng = "9, 0"}, {.ger = "Ausschnitt, alles zeigen", .eng = "show the part, all"}},
        {{.ger = "Bild auf, ab", .eng = "Page up, down"}, {.ger = "vor und zurück blättern", .eng = "go back and on"}},
        {{.ger = "Strg+Q", .eng = "Ctrl+Q"}, {.ger = "beenden", .eng = "quit"}},
    };
    QString text = "<table>";
    for (const auto& [key, meaning] : keys)
        text += "<tr><td><b>" + Say(key) + "</b>&nbsp;&nbsp;</td><td>" + Say(meaning) + "</td></tr>";
    box->setText(text + "</table>");
    box->open();
}

} // namespace studio
