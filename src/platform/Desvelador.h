#pragma once

#include <QObject>

#include <memory>

namespace vellora
{

/// Keeps the computer awake while a long job runs, by an inhibitor lock of the login manager. The lock is a file
/// descriptor of ours, so it ends with the program whatever happens. Where there is no login manager, quietly nothing.
/// Main thread only; nothing here waits.
class Desvelador : public QObject
{
    Q_OBJECT

public:
    explicit Desvelador(QObject *padre = nullptr);
    ~Desvelador() override;

    /// A second call while awake changes nothing.
    void despierta();
    void puedeDormir();

private:
    struct Privado;
    std::unique_ptr<Privado> d;
};

} // namespace vellora
