#pragma once

#include "core/Tarea.h"
#include "session/DatosBateria.h"
#include "session/Dispositivo.h"

#include <QObject>
#include <QString>
#include <QVariant>
#include <qqmlregistration.h>

namespace vellora
{

/// What the views write about a phone, in words. An absent value gives an empty text, so that its place is left out.
class Rotulos : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// "iPhone 14 Pro · iOS 17.5.1 · …4C1E9A"
    Q_INVOKABLE static QString resumen(const vellora::Dispositivo &iphone);
    /// "iOS 17.5.1"
    Q_INVOKABLE static QString sistema(const vellora::Dispositivo &iphone);
    /// "…4C1E9A"
    Q_INVOKABLE static QString identificador(const vellora::Dispositivo &iphone);
    /// "82 %"
    Q_INVOKABLE static QString carga(const vellora::Dispositivo &iphone);
    /// "82 % · cargando"
    Q_INVOKABLE static QString bateria(const vellora::Dispositivo &iphone);
    Q_INVOKABLE static QString simboloDeBateria(const vellora::Dispositivo &iphone);
    /// A fifth or less is left and it is not charging.
    Q_INVOKABLE static bool bateriaBaja(const vellora::Dispositivo &iphone);
    /// "38,2 GB libres"
    Q_INVOKABLE static QString libres(const vellora::Dispositivo &iphone);
    /// "256 GB"
    Q_INVOKABLE static QString capacidad(const vellora::Dispositivo &iphone);
    /// "Cargando", "Llena y enchufada", "Enchufada" or "Con batería".
    Q_INVOKABLE static QString estadoDeLaBateria(const vellora::DatosBateria &pila);
    /// "3,74"
    Q_INVOKABLE static QString conDecimales(double valor, int cuantos);
    /// "3 h 20 min"
    Q_INVOKABLE static QString duracion(qint64 minutos);
    /// Done part of a job, 0 to 1; -1 while its total is not known.
    Q_INVOKABLE static double avance(vellora::Tarea *tarea);
    /// Used part of the capacity, 0 to 1; -1 when one of the two numbers is absent or the capacity is nothing.
    Q_INVOKABLE static double ocupado(const vellora::Dispositivo &iphone);
};

} // namespace vellora
