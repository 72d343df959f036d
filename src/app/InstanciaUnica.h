#pragma once

#include <QLocalServer>
#include <QObject>

namespace vellora
{

/// One window for each person: a second start calls the first and ends. Main thread only.
class InstanciaUnica : public QObject
{
    Q_OBJECT

public:
    explicit InstanciaUnica(QObject *padre = nullptr);

    /// True when another was there and has been called. Otherwise this one answers from now on.
    bool yaHayOtra();

signals:
    /// A second start asks for the window.
    void llamada();

private:
    QLocalServer servidor;
};

} // namespace vellora
