#include "studio/qt/Panel.h"

#include "studio/qt/DragHandle.h"
#include "studio/qt/Texts.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>

namespace studio {
namespace {

/// Work that is over sooner gets no bar.
constexpr std::chrono::milliseconds kShortWork{500};

QLabel* MakeText()
{
    auto* const text = new QLabel;
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    return text;
}

bool IsLong(const Work& work)
{
    return work.isGoing && std::chrono::steady_clock::now() - work.since >= kShortWork;
}

QComboBox* MakeChoice()
{
    auto* const choice = new QComboBox;
    choice->setFocusPolicy(Qt::TabFocus);
    choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    choice->setMinimumContentsLength(22);
    return choice;
}

} // namespace

Panel::Panel(Studio& studio, Language language, Actions actions)
    : studio_(studio),
      language_(language),
      actions_(std::move(actions))
{
    part_ = MakePart();
    kind_ = MakeKind();
    machine_ = MakeMachine();
    report_ = MakeReport();
    result_ = MakeResult();
    handOver_ = MakeHandOver();
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    for (auto* const box : {part_, kind_, machine_, report_, result_, handOver_}) {
        box->layout()->setContentsMargins(8, 4, 8, 6);
        box->layout()->setSpacing(4);
        column->addWidget(box);
    }
    column->addStretch();
}

QString Panel::Say(const MessagePair& pair) const
{
    return Text(pair, language_);
}

QLineEdit* Panel::MakeTimeField(const MessagePair& name, bool (Studio::*type)(std::string_view))
{
    auto* const field = new QLineEdit;
    Describe(*field, Say(name),
             Say({.ger = "Sekunden, oder Minuten und Sekunden: 65, 1:05, 1:05,5",
                  .eng = "Seconds, or minutes and seconds: 65, 1:05, 1:05.5"}));
    connect(field, &QLineEdit::editingFinished, this, [this, field, type] {
        if (!field->isModified()) return;
        field->setModified(false);
        if (!(studio_.*type)(field->text().trimmed().toStdString())) {
            // What was typed is marked, and stays until something else is chosen.
            field->setProperty("isWrong", true);
            field->setStyleSheet("color: #b00020; background: #ffe9ec;");
            length_->setText(Say({.ger = "Das ist keine Zeit vor dem Ende oder nach dem Anfang. Zum Beispiel: 1:05,5",
                                  .eng = "This is no time before the end or after the start. Example: 1:05.5"}));
            return;
        }
        actions_.changed();
    });
    return field;
}

QPushButton* Panel::MakeButton(const MessagePair& text, const MessagePair& description, std::function<void()> action)
{
    auto* const button = new QPushButton(Say(text));
    Describe(*button, Say(text), Say(description));
    button->setFocusPolicy(Qt::TabFocus); // a click leaves the keys with the pictures
    connect(button, &QPushButton::clicked, this, [this, action = std::move(action)] {
        action();
        actions_.changed();
    });
    return button;
}

QGroupBox* Panel::MakePart()
{
    auto* const box = new QGroupBox(Say({.ger = "Ausschnitt", .eng = "Part"}));
    from_ = MakeTimeField({.ger = "Von", .eng = "From"}, &Studio::TypeFrom);
    to_ = MakeTimeField({.ger = "Bis", .eng = "To"}, &Studio::TypeTo);
    length_ = MakeText();
    whole_ =
        MakeButton({.ger = "Alles", .eng = "Whole"}, {.ger = "Die ganze Datei nehmen", .eng = "Take the whole file"},
                   [this] { studio_.TakeWhole(); });
    undo_ = MakeButton({.ger = "Zurück", .eng = "Undo"},
                       {.ger = "Die letzte Änderung des Ausschnitts zurücknehmen (Strg+Z)",
                        .eng = "Take back the last change of the part (Ctrl+Z)"},
                       [this] { studio_.Undo(); });
    undo_->setShortcut(QKeySequence::Undo);
    auto* const times = new QHBoxLayout;
    for (const auto& [text, field] :
         {std::pair(Say({.ger = "&Von", .eng = "&From"}), from_), std::pair(Say({.ger = "&Bis", .eng = "&To"}), to_)}) {
        auto* const label = new QLabel(text);
        label->setBuddy(field);
        times->addWidget(label);
        times->addWidget(field, 1);
    }
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(whole_);
    buttons->addWidget(undo_);
    auto* const column = new QVBoxLayout(box);
    column->addLayout(times);
    column->addWidget(length_);
    column->addLayout(buttons);
    return box;
}

QGroupBox* Panel::MakeKind()
{
    auto* const box = new QGroupBox(Say({.ger = "Was es ist", .eng = "What it is"}));
    auto* const grid = new QGridLayout(box);
    auto* const group = new QButtonGroup(box);
    int row = 0;
    for (const auto kind : prepare::kKinds) {
        auto* const button = new QRadioButton(Text(NameOf(kind, language_)));
        Describe(*button, button->text(), Text(ExplanationOf(kind, language_)));
        button->setFocusPolicy(Qt::TabFocus);
        connect(button, &QRadioButton::clicked, this, [this, kind] {
            studio_.SetKind(kind);
            actions_.changed();
        });
        group->addButton(button);
        grid->addWidget(button, row / 2, row % 2);
        kinds_.at(static_cast<std::size_t>(row)) = button;
        ++row;
    }
    explanation_ = MakeText();
    grid->addWidget(explanation_, row, 0, 1, 2);
    return box;
}

QGroupBox* Panel::MakeMachine()
{
    auto* const box = new QGroupBox(Say({.ger = "Rechner", .eng = "Machine"}));
    target_ = MakeChoice();
    for (const auto target : kTargets)
        target_->addItem(Text(NameOf(target, language_)));
    Describe(*target_, Say({.ger = "Rechner", .eng = "Machine"}),
             Say({.ger = "Für welchen Rechner: davon hängt ab, wie viel hineinpasst",
                  .eng = "For which machine: how much fits depends on it"}));
    connect(target_, &QComboBox::activated, this, [this](int chosen) {
        studio_.SetTarget(kTargets.at(static_cast<std::size_t>(chosen)));
        actions_.changed();
    });
    rate_ = MakeChoice();
    for (const auto& rate : machine::kSampleRates)
        rate_->addItem(QString::number(rate.hertz) + " Hz");
    Describe(*rate_, Say({.ger = "Abtastrate", .eng = "Sample rate"}),
             Say({.ger = "Höher: feinere Tonhöhen. Niedriger: längere Aufnahmen.",
                  .eng = "Higher: finer pitches. Lower: longer recordings."}));
    connect(rate_, &QComboBox::activated, this, [this](int chosen) {
        studio_.SetRate(machine::kSampleRates.at(static_cast<std::size_t>(chosen)));
        actions_.changed();
    });
    auto* const column = new QVBoxLayout(box);
    column->addWidget(target_);
    column->addWidget(rate_);
    return box;
}

QGroupBox* Panel::MakeReport()
{
    auto* const box = new QGroupBox(Say({.ger = "Klangdatei", .eng = "Sound file"}));
    reportLines_ = new QFormLayout(box);
    return box;
}

QGroupBox* Panel::MakeResult()
{
    auto* const box = new QGroupBox(Say({.ger = "Ergebnis", .eng = "Result"}));
    meter_ = new QProgressBar;
    meter_->setTextVisible(false);
    meterText_ = MakeText();
    takeWhatFits_ = MakeButton({.ger = "Nehmen, was passt", .eng = "Take what fits"},
                               {.ger = "Den Ausschnitt vom Anfang an so lang machen, wie er in den Rechner passt",
                                .eng = "Make the part as long, from its start, as fits into the machine"},
                               [this] { studio_.TakeWhatFits(); });
    workText_ = MakeText();
    work_ = new QProgressBar;
    work_->setAccessibleName(Say({.ger = "Fortschritt", .eng = "Progress"}));
    cancel_ = MakeButton({.ger = "Anhalten", .eng = "Cancel"},
                         {.ger = "Das Vorbereiten anhalten", .eng = "Stop the preparing"}, [this] {
                             if (Now().preparing.isGoing)
                                 studio_.Cancel();
                             else
                                 studio_.PrepareAgain();
                         });
    auto* const bar = new QHBoxLayout;
    bar->addWidget(work_, 1);
    bar->addWidget(cancel_);
    auto* const column = new QVBoxLayout(box);
    column->addWidget(meter_);
    column->addWidget(meterText_);
    column->addWidget(takeWhatFits_);
    column->addWidget(workText_);
    column->addLayout(bar);
    return box;
}

QGroupBox* Panel::MakeHandOver()
{
    auto* const box = new QGroupBox(Say({.ger = "Weitergeben", .eng = "Hand over"}));
    saveFile_ = MakeButton(
        {.ger = "Klangdatei speichern …", .eng = "Save sound file…"},
        {.ger = "Die Datei, die der Rechner lädt (Strg+S)", .eng = "The file that the machine loads (Ctrl+S)"},
        [this] { actions_.save(Output::SoundFile); });
    saveFile_->setShortcut(QKeySequence::Save);
    saveRecording_ = MakeButton({.ger = "Aufnahme speichern …", .eng = "Save recording…"},
                                {.ger = "Eine Wave-Datei für das Fenster von Tonfloss (Strg+Umschalt+S)",
                                 .eng = "A Wave file for the window of Tonfloss (Ctrl+Shift+S)"},
                                [this] { actions_.save(Output::Recording); });
    saveRecording_->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_S);
    drag_ = new DragHandle(studio_, Say({.ger = "Aufnahme ziehen", .eng = "Drag recording"}));
    Describe(
        *drag_, drag_->text(),
        Say({.ger = "Von hier auf das Fenster von Tonfloss oder in einen Ordner ziehen. Mit der Tastatur: Aufnahme "
                    "speichern.",
             .eng = "Drag from here onto the window of Tonfloss, or into a folder. By keys: save the recording."}));
    drag_->setFocusPolicy(Qt::NoFocus);
    auto* const column = new QVBoxLayout(box);
    send_ = MakeButton({.ger = "Senden …", .eng = "Send…"},
                       {.ger = "Über einen seriellen Anschluss an den Rechner senden",
                        .eng = "Send it to the machine over a serial port"},
                       [this] { actions_.send(); });
    for (auto* const button : {saveFile_, saveRecording_, drag_, send_})
        column->addWidget(button);
    return box;
}

void Panel::Refresh()
{
    const bool isSaved = Now().file && Now().file->saved;
    for (auto* const box : {part_, kind_, machine_})
        box->setVisible(!isSaved);
    report_->setVisible(isSaved);
    RefreshPart();
    RefreshChoices();
    RefreshReport();
    RefreshResult();
    RefreshHandOver();
}

void Panel::SetHasPort(bool hasPort)
{
    hasPort_ = hasPort;
    RefreshHandOver();
}

void Panel::RefreshPart()
{
    const auto& state = Now();
    const bool isThere = state.part.Length() > 0;
    part_->setEnabled(isThere);
    undo_->setEnabled(state.canUndo);
    whole_->setEnabled(!state.isWhole);
    bool isWrong = false;
    for (const auto& [field, second] : {std::pair(from_, state.part.from), std::pair(to_, state.part.to)}) {
        const auto text = isThere ? Text(TimeText(second, 3)) : QString();
        const bool hasChanged = field->property("shown").toString() != text;
        if (field->property("isWrong").toBool() && !hasChanged) {
            isWrong = true;
            continue;
        }
        if (field->property("isWrong").toBool()) {
            field->setProperty("isWrong", false);
            field->setStyleSheet({});
        }
        if (!hasChanged && (field->isModified() || field->text() == text)) continue; // somebody is typing
        field->setProperty("shown", text);
        field->setText(text);
        field->setCursorPosition(0);
    }
    if (isWrong) return;
    const auto length = Text(TimeText(state.part.Length(), 3));
    length_->setText(isThere ? Say({.ger = "Länge: %1", .eng = "Length: %1"}).arg(length) : QString());
}

void Panel::RefreshChoices()
{
    const auto& state = Now();
    const auto kind = static_cast<std::size_t>(state.settings.kind);
    kinds_.at(kind)->setChecked(true);
    explanation_->setText(Text(ExplanationOf(state.settings.kind, language_)));
    target_->setCurrentIndex(static_cast<int>(state.settings.target));
    for (std::size_t i = 0; i < machine::kSampleRates.size(); ++i)
        if (machine::kSampleRates.at(i).hertz == state.settings.rate.hertz) rate_->setCurrentIndex(static_cast<int>(i));
}

void Panel::RefreshReport()
{
    const auto* const result = Now().result.get();
    if (std::exchange(reported_, result) == result) return;
    while (reportLines_->rowCount() > 0)
        reportLines_->removeRow(0);
    for (const auto& [name, value] : ReportOf(Now(), language_)) {
        auto* const text = MakeText();
        text->setText(Text(value));
        text->setAccessibleName(Text(name) + ": " + Text(value));
        reportLines_->addRow(Text(name) + ":", text);
    }
}

void Panel::RefreshResult()
{
    const auto& state = Now();
    const auto& meter = state.meter;
    const auto text = Text(MeterText(state, language_));
    meter_->setRange(0, static_cast<int>(meter.room));
    meter_->setValue(static_cast<int>(meter.fits ? meter.room : std::min(meter.bytes, meter.room)));
    Describe(*meter_, Say({.ger = "Bytes im Rechner", .eng = "Bytes in the machine"}), text);
    meterText_->setText(text);
    takeWhatFits_->setVisible(meter.fits && *meter.fits > 0);
    const bool isStopped = state.file && !state.file->saved && !state.isCurrent && !state.preparing.isGoing &&
                           state.part.Length() > 0 && !meter.fits;
    const bool shows = IsLong(state.preparing);
    // What can't be done is told above the pictures, and how long it plays in the meter's text.
    const bool tellsKind = state.isCurrent && state.settings.kind == prepare::Kind::Music && !state.file->saved;
    workText_->setText(shows || tellsKind ? Text(WorkText(state, language_)) : QString());
    workText_->setVisible(!workText_->text().isEmpty());
    work_->setVisible(shows);
    work_->setValue(static_cast<int>(state.preparing.done * 100));
    cancel_->setVisible(shows || isStopped);
    cancel_->setText(isStopped ? Say({.ger = "Noch einmal", .eng = "Prepare again"})
                               : Say({.ger = "Anhalten", .eng = "Cancel"}));
    cancel_->setAccessibleName(cancel_->text());
}

void Panel::RefreshHandOver()
{
    const bool isSaved = Now().file && Now().file->saved;
    saveFile_->setEnabled(studio_.CanSave(Output::SoundFile));
    saveFile_->setText(isSaved ? Say({.ger = "Eine speichern, die spielt …", .eng = "Save one that plays…"})
                               : Say({.ger = "Klangdatei speichern …", .eng = "Save sound file…"}));
    for (auto* const button : {saveRecording_, drag_}) {
        button->setEnabled(studio_.CanSave(Output::Recording));
        button->setVisible(!isSaved);
    }
    saveFile_->setVisible(!isSaved || saveFile_->isEnabled());
    const bool canSend = studio_.ForTheMachine().has_value();
    send_->setEnabled(canSend);
    send_->setVisible(hasPort_);
    handOver_->setVisible(!isSaved || saveFile_->isEnabled() || (hasPort_ && canSend));
}

} // namespace studio
