#include "studio/qt/SendDialog.h"

#include "core/MachineSteps.h"
#include "studio/qt/Texts.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPromise>
#include <QPushButton>
#include <QScrollArea>

#include <optional>
#include <thread>

namespace studio {
namespace {

constexpr int kDone = 1000; // of the bar

using Outcome = std::optional<serial::Refusal>;

/// Sends in a thread of its own. How far it is comes as the future's progress, 0 to kDone.
QFuture<Outcome> SendInThread(std::string bytes, std::string port, int baud,
                              std::shared_ptr<std::atomic<bool>> isStopped)
{
    QPromise<Outcome> promise;
    auto outcome = promise.future();
    promise.setProgressRange(0, kDone);
    promise.start();
    std::thread([bytes = std::move(bytes), port = std::move(port), baud, isStopped = std::move(isStopped),
                 promise = std::move(promise)]() mutable {
        const core::Progress progress([&](double done) {
            promise.setProgressValue(static_cast<int>(done * kDone));
            return !*isStopped;
        });
        promise.addResult(serial::Send({.bytes = bytes, .port = port, .baud = baud}, progress));
        promise.finish();
    }).detach();
    return outcome;
}

} // namespace

SendDialog::SendDialog(QWidget& window, Language language, const Studio::Parcel& parcel,
                       const std::vector<serial::Port>& ports)
    : QDialog(&window),
      language_(language),
      bytes_(parcel.bytes()),
      loadAddress_(parcel.loadAddress),
      port_(new QComboBox),
      baud_(new QComboBox),
      steps_(new QLabel),
      bar_(new QProgressBar),
      text_(new QLabel),
      send_(new QPushButton)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(Say({.ger = "An den Rechner senden", .eng = "Send to the machine"}));
    for (const auto& port : ports) {
        const auto name = Text(port.name);
        port_->addItem(port.description.empty() ? name : name + " – " + Text(port.description), name);
    }
    Describe(*port_, Say({.ger = "Anschluss", .eng = "Port"}),
             Say({.ger = "An welchem der Rechner hängt", .eng = "The one that the machine is connected to"}));
    for (const auto baud : serial::kBauds)
        baud_->addItem(QString::number(baud), baud);
    baud_->setCurrentText("9600");
    Describe(*baud_, "Baud", Say({.ger = "Wie schnell gesendet wird", .eng = "How fast it is sent"}));
    connect(baud_, &QComboBox::currentIndexChanged, this, [this] { ShowSteps(); });
    steps_->setTextFormat(Qt::PlainText);
    steps_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    steps_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    steps_->setAccessibleName(Say({.ger = "Am Rechner eingeben", .eng = "Type on the machine"}));
    bar_->setRange(0, kDone);
    bar_->setValue(0);
    bar_->setAccessibleName(Say({.ger = "Gesendet", .eng = "Sent"}));
    text_->setWordWrap(true);
    text_->setTextFormat(Qt::PlainText);
    text_->setText(Say({.ger = "Gib das am Rechner ein. Wenn BLOAD wartet: senden.",
                        .eng = "Type this on the machine. When BLOAD waits: send."}));
    connect(send_, &QPushButton::clicked, this, [this] { isStopped_ ? void(*isStopped_ = true) : Start(); });
    send_->setText(Say({.ger = "Senden", .eng = "Send"}));
    send_->setDefault(true);
    auto* const close = new QPushButton(Say({.ger = "Schließen", .eng = "Close"}));
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::close);

    auto* const choices = new QFormLayout;
    choices->addRow(Say({.ger = "&Anschluss", .eng = "&Port"}), port_);
    choices->addRow("&Baud", baud_);
    auto* const scrolled = new QScrollArea;
    scrolled->setWidget(steps_);
    scrolled->setWidgetResizable(true);
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(bar_, 1);
    buttons->addWidget(send_);
    buttons->addWidget(close);
    auto* const column = new QVBoxLayout(this);
    column->addLayout(choices);
    column->addWidget(scrolled, 1);
    column->addWidget(text_);
    column->addLayout(buttons);
    ShowSteps();
    resize(std::max(sizeHint().width(), steps_->sizeHint().width() + 60), steps_->sizeHint().height() + 240);
}

SendDialog::~SendDialog()
{
    if (isStopped_) *isStopped_ = true;
}

QString SendDialog::Say(const MessagePair& pair) const
{
    return Text(pair, language_);
}

void SendDialog::ShowSteps()
{
    QString text;
    for (const auto& step : core::StepsFor(loadAddress_, std::ssize(bytes_) - 16, baud_->currentData().toInt()))
        text += Text(step) + '\n';
    steps_->setText(text.trimmed());
}

void SendDialog::Start()
{
    isStopped_ = std::make_shared<std::atomic<bool>>(false);
    for (auto* const choice : {port_, baud_})
        choice->setEnabled(false);
    send_->setText(Say({.ger = "Anhalten", .eng = "Stop"}));
    text_->setText(Say({.ger = "Wird gesendet …", .eng = "Being sent…"}));
    auto* const watcher = new QFutureWatcher<Outcome>(this);
    connect(watcher, &QFutureWatcherBase::progressValueChanged, bar_, &QProgressBar::setValue);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher] {
        End(watcher->result());
        watcher->deleteLater();
    });
    watcher->setFuture(
        SendInThread(bytes_, port_->currentData().toString().toStdString(), baud_->currentData().toInt(), isStopped_));
}

void SendDialog::End(const Outcome& refusal)
{
    isStopped_.reset();
    for (auto* const choice : {port_, baud_})
        choice->setEnabled(true);
    send_->setText(Say({.ger = "Noch einmal senden", .eng = "Send again"}));
    text_->setText(refusal ? Reason(*refusal)
                           : Say({.ger = "Gesendet: %1 Bytes.", .eng = "Sent: %1 bytes."}).arg(bytes_.size()));
}

QString SendDialog::Reason(const serial::Refusal& refusal) const
{
    using enum serial::Refusal::Kind;
    switch (refusal.kind) {
    case NoSuchPort:
        return Say({.ger = "Diesen Anschluss gibt es nicht mehr.", .eng = "This port isn't there any more."});
    case NotAPort: return Say({.ger = "Das ist kein serieller Anschluss.", .eng = "This is no serial port."});
    case Busy:
        return Say({.ger = "Ein anderes Programm benutzt diesen Anschluss. Schließ es, und versuch es noch einmal.",
                    .eng = "Another program uses this port. Close it, and try again."});
    case NoRights:
        return Say({.ger = "Dieser Anschluss ist dir nicht erlaubt. Unter Debian und Ubuntu ist er es der Gruppe "
                           "dialout: sudo usermod -aG dialout $USER, dann ab- und wieder anmelden.",
                    .eng = "You may not use this port. On Debian and Ubuntu the group dialout may: sudo usermod -aG "
                           "dialout $USER, then log out and in again."});
    case Baud:
        return Say({.ger = "Dieser Anschluss kann nicht auf %1 Baud gestellt werden.",
                    .eng = "This port can't be set to %1 baud."})
            .arg(baud_->currentText());
    case Lost:
        return Say({.ger =
                        "Der Anschluss ging verloren. Sieh nach dem Kabel, lass den Rechner wieder mit BLOAD warten, "
                        "und sende noch einmal.",
                    .eng = "The port went while it was in use. Look after the cable, have the machine wait with BLOAD "
                           "again, and send again."});
    case Stopped:
        return Say({.ger = "Angehalten. Was der Rechner hat, ist nicht ganz.",
                    .eng = "It was stopped. What the machine has got isn't whole."});
    case System: break;
    }
    return Text(refusal.reason.message());
}

} // namespace studio
