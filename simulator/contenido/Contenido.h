#pragma once

#include <QString>

namespace simulado
{

/// What a simulated phone is made from. The same options give the same contents.
struct OpcionesContenido {
    enum Tamano { Minimo, Normal, Grande };

    QString udid;
    QString nombre = QStringLiteral("iPhone de Marta");
    QString producto = QStringLiteral("iPhone15,2");
    QString version = QStringLiteral("17.5.1");
    quint32 semilla = 1;
    Tamano tamano = Normal;
};

/// Generates the phone's folder (telefono.json, media/, dominios/, apps/). It is written beside as
/// `carpetaDelTelefono`.tmp and renamed at the end, so a folder that exists is whole; one that exists already is left
/// as it is. Returns an error sentence in Spanish, or an empty text when it went well. Blocking; any thread; needs no
/// QGuiApplication.
QString generarContenido(const QString &carpetaDelTelefono, const OpcionesContenido &opciones);

} // namespace simulado
