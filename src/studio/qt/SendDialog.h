// SendDialog.h: a sound file sent to the machine over a serial port, with what is to be typed there beside it.
#pragma once

#include "core/MessagePair.h"
#include "serial/Ports.h"
#include "serial/Send.h"
#include "studio/Studio.h"
#include "studio/Words.h"

#include <QDialog>

#include <atomic>
#include <memory>
#include <vector>

class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace studio {

class SendDialog : public QDialog {
public:
    /// Requires: there is a port.
    SendDialog(QWidget& window, Language language, const Studio::Parcel& parcel,
               const std::vector<serial::Port>& ports);
    /// Stops what is being sent. The port has its settings back a moment later.
    ~SendDialog() override;
    SendDialog(const SendDialog&) = delete;
    SendDialog& operator=(const SendDialog&) = delete;

private:
    void ShowSteps();
    void Start();
    void End(const std::optional<serial::Refusal>& refusal);
    [[nodiscard]] QString Say(const MessagePair& pair) const;
    [[nodiscard]] QString Reason(const serial::Refusal& refusal) const;

    Language language_;
    std::string bytes_;
    std::uint16_t loadAddress_;
    std::shared_ptr<std::atomic<bool>> isStopped_; // of what is being sent now; null for nothing

    QComboBox* port_;
    QComboBox* baud_;
    QLabel* steps_;
    QProgressBar* bar_;
    QLabel* text_;
    QPushButton* send_;
};

} // namespace studio
