#include "ui/sesion/Rotulos.h"

#include "core/Formato.h"

#include <QLocale>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr qint64 cargaBaja = 20;
constexpr qint64 cargaAlta = 60;

} // namespace

QString Rotulos::resumen(const Dispositivo &iphone)
{
    QStringList partes{iphone.modelo(), sistema(iphone), identificador(iphone)};
    partes.removeAll(QString());
    return partes.join(QStringLiteral(" · "));
}

QString Rotulos::sistema(const Dispositivo &iphone)
{
    const auto sinDato = iphone.sistema.isEmpty() || iphone.sistema == QStringLiteral("—");
    return sinDato ? QString() : QStringLiteral("iOS ") + iphone.sistema;
}

QString Rotulos::identificador(const Dispositivo &iphone)
{
    return iphone.id.isEmpty() ? QString() : QStringLiteral("…") + iphone.udidCorto();
}

QString Rotulos::carga(const Dispositivo &iphone)
{
    return iphone.bateria ? QStringLiteral("%1 %").arg(*iphone.bateria) : QString();
}

QString Rotulos::bateria(const Dispositivo &iphone)
{
    const auto tanto = carga(iphone);
    return iphone.cargando && !tanto.isEmpty() ? tanto + QStringLiteral(" · cargando") : tanto;
}

QString Rotulos::simboloDeBateria(const Dispositivo &iphone)
{
    if (iphone.cargando)
        return QStringLiteral("battery.100.bolt");
    const auto tanto = iphone.bateria.value_or(cargaAlta);
    if (tanto > cargaAlta)
        return QStringLiteral("battery.100");
    return tanto > cargaBaja ? QStringLiteral("battery.50") : QStringLiteral("battery.0");
}

bool Rotulos::bateriaBaja(const Dispositivo &iphone)
{
    return !iphone.cargando && iphone.bateria && *iphone.bateria <= cargaBaja;
}

QString Rotulos::libres(const Dispositivo &iphone)
{
    return iphone.libresBytes ? Formato::tamano(iphone.libresBytes) + QStringLiteral(" libres") : QString();
}

QString Rotulos::capacidad(const Dispositivo &iphone)
{
    return iphone.totalBytes ? Formato::tamano(iphone.totalBytes) : QString();
}

QString Rotulos::estadoDeLaBateria(const DatosBateria &pila)
{
    if (pila.cargando)
        return u"Cargando"_s;
    if (pila.llena && pila.enchufado)
        return u"Llena y enchufada"_s;
    return pila.enchufado ? u"Enchufada"_s : u"Con batería"_s;
}

QString Rotulos::conDecimales(double valor, int cuantos)
{
    return QLocale(QLocale::Spanish, QLocale::Spain).toString(valor, 'f', cuantos);
}

QString Rotulos::duracion(qint64 minutos)
{
    constexpr qint64 enUnaHora = 60;
    if (minutos < enUnaHora)
        return u"%1 min"_s.arg(minutos);
    return u"%1 h %2 min"_s.arg(minutos / enUnaHora).arg(minutos % enUnaHora);
}

double Rotulos::avance(Tarea *tarea)
{
    if (!tarea || tarea->deTotal() <= 0)
        return -1;
    return static_cast<double>(std::min(tarea->hechos(), tarea->deTotal())) / static_cast<double>(tarea->deTotal());
}

double Rotulos::ocupado(const Dispositivo &iphone)
{
    if (!iphone.libresBytes || !iphone.totalBytes || *iphone.totalBytes <= 0)
        return -1;
    const auto libre = static_cast<double>(*iphone.libresBytes) / static_cast<double>(*iphone.totalBytes);
    return std::clamp(1 - libre, 0.0, 1.0);
}

} // namespace vellora
