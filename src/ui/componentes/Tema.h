#pragma once

#include <QColor>
#include <QObject>
#include <qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace vellora
{

/// Colours and measures of the window, light or dark: one instance for the whole program. Main thread only.
class Tema : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool oscuro READ oscuro NOTIFY cambio)
    Q_PROPERTY(QColor fondo READ fondo NOTIFY cambio)
    Q_PROPERTY(QColor lateral READ lateral NOTIFY cambio)
    Q_PROPERTY(QColor tarjeta READ tarjeta NOTIFY cambio)
    Q_PROPERTY(QColor borde READ borde NOTIFY cambio)
    Q_PROPERTY(QColor texto READ texto NOTIFY cambio)
    Q_PROPERTY(QColor suave READ suave NOTIFY cambio)
    Q_PROPERTY(QColor tenue READ tenue NOTIFY cambio)
    Q_PROPERTY(QColor acento READ acento NOTIFY cambio)
    Q_PROPERTY(QColor acentoSuave READ acentoSuave NOTIFY cambio)
    Q_PROPERTY(QColor acentoTexto READ acentoTexto NOTIFY cambio)
    Q_PROPERTY(QColor sobreAcento READ sobreAcento NOTIFY cambio)
    Q_PROPERTY(QColor bien READ bien NOTIFY cambio)
    Q_PROPERTY(QColor aviso READ aviso NOTIFY cambio)
    Q_PROPERTY(QColor mal READ mal NOTIFY cambio)
    Q_PROPERTY(QColor malTexto READ malTexto NOTIFY cambio)
    Q_PROPERTY(QColor fondoBien READ fondoBien NOTIFY cambio)
    Q_PROPERTY(QColor fondoAviso READ fondoAviso NOTIFY cambio)
    Q_PROPERTY(QColor fondoMal READ fondoMal NOTIFY cambio)
    Q_PROPERTY(QColor velo READ velo NOTIFY cambio)

public:
    enum class Eleccion { Sistema, Claro, Oscuro };

    /// The one instance; the program makes it before the window and it outlives every view.
    static Tema &unico();
    /// For the views' engine, which does not own it.
    static Tema *create(QQmlEngine *motor, QJSEngine *guion);

    /// "claro", "oscuro", and anything else is the system's.
    static Eleccion eleccionDe(const QString &texto);
    void elegir(Eleccion nueva);
    void ponSistemaOscuro(bool valor);

    /// Size in pixels and weight of the letters of a `Texto.Tipo`, in the order of that enumeration.
    Q_INVOKABLE static int letra(int tipo);
    Q_INVOKABLE static int peso(int tipo);

    bool oscuro() const { return oscuro_; }
    QColor fondo() const { return tono(0xF5F6F8, 0x15171B); }
    QColor lateral() const { return tono(0xECEEF2, 0x1B1E23); }
    QColor tarjeta() const { return tono(0xFFFFFF, 0x1F2329); }
    QColor borde() const { return tono(0xE2E5EA, 0x2C313A); }
    QColor texto() const { return tono(0x14171C, 0xEDEFF3); }
    QColor suave() const { return tono(0x5E6673, 0xA4ACB8); }
    /// For drawings and rules only: it has too little contrast for words.
    QColor tenue() const { return tono(0x8A93A1, 0x737C8A); }
    QColor acento() const { return tono(0x2F6BE8, 0x6C9BFF); }
    QColor acentoSuave() const { return tono(0xE6EEFD, 0x22304D); }
    /// Words in the accent's colour that must also be read on `acentoSuave`.
    QColor acentoTexto() const { return tono(0x2860D8, 0x7FA8FF); }
    /// Words on `acento`.
    QColor sobreAcento() const { return tono(0xFFFFFF, 0x0F1726); }
    QColor bien() const { return QColor::fromRgb(0x1BAF7A); }
    QColor aviso() const { return QColor::fromRgb(0xEDA100); }
    QColor mal() const { return QColor::fromRgb(0xE34948); }
    /// Words of warning that must also be read on `fondoMal`.
    QColor malTexto() const { return tono(0xB3261E, 0xFF8A85); }
    QColor fondoBien() const { return tono(0xE2F5ED, 0x14352A); }
    QColor fondoAviso() const { return tono(0xFFF4DC, 0x33290F); }
    QColor fondoMal() const { return tono(0xFDEAEA, 0x3A1E1F); }
    /// Laid over the window under a sheet.
    QColor velo() const { return oscuro_ ? QColor(0, 0, 0, 150) : QColor(20, 23, 28, 90); }

signals:
    void cambio();

private:
    Tema() = default;
    QColor tono(QRgb claro, QRgb noche) const { return QColor::fromRgb(oscuro_ ? noche : claro); }
    void aplicar();

    Eleccion eleccion = Eleccion::Sistema;
    bool sistemaOscuro = false;
    bool oscuro_ = false;
};

} // namespace vellora
