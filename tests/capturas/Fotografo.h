#pragma once

#include <QDir>
#include <QList>
#include <QString>

#include <functional>

class QQuickWindow;

/// Takes pictures of a window in both themes and in several widths: NOMBRE-WIDTH-claro.png, NOMBRE-WIDTH-oscuro.png.
class Fotografo
{
public:
    explicit Fotografo(const QString &carpeta);

    /// `justoAntes` runs right before each picture, for what passes in a moment.
    void retrata(QQuickWindow &ventana, const QString &nombre, const QList<int> &anchos = {960, 1280},
                 const std::function<void()> &justoAntes = {});
    int hechas() const { return hechas_; }
    bool todasGuardadas() const { return todasGuardadas_; }

private:
    QDir carpeta;
    int hechas_ = 0;
    bool todasGuardadas_ = true;
};
