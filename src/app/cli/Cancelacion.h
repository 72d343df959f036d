#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace vellora
{

/// Turns the terminal's Ctrl+C and a polite request to end into a signal of the event loop. One at a time.
class Cancelacion : public QObject
{
    Q_OBJECT

public:
    explicit Cancelacion(QObject *padre = nullptr);
    ~Cancelacion() override;

signals:
    void pedida();

private:
    std::unique_ptr<QSocketNotifier> aviso;
};

} // namespace vellora
