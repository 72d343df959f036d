#include "app/cli/Consola.h"
#include "app/cli/Ordenes.h"
#include "core/Formato.h"
#include "session/Modelo.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

QStringList enPalabras(const Dispositivo &uno)
{
    QStringList trozos{uno.nombre, uno.modelo(), u"iOS "_s + uno.sistema};
    if (uno.bateria)
        trozos << u"%1 %%2"_s.arg(*uno.bateria).arg(uno.cargando ? u" cargando"_s : QString());
    if (uno.libresBytes)
        trozos << u"%1 libres de %2"_s.arg(Formato::tamano(uno.libresBytes), Formato::tamano(uno.totalBytes));
    return {trozos.join(u" · "_s), uno.id};
}

QJsonObject enJson(const Dispositivo &uno)
{
    QJsonObject objeto{{u"udid"_s, uno.id},         {u"nombre"_s, uno.nombre},   {u"producto"_s, uno.modeloCrudo},
                       {u"modelo"_s, uno.modelo()}, {u"sistema"_s, uno.sistema}, {u"cargando"_s, uno.cargando}};
    const auto numero = [&](const QString &clave, const std::optional<qint64> &valor) {
        objeto[clave] = valor ? QJsonValue(*valor) : QJsonValue();
    };
    numero(u"bateria"_s, uno.bateria);
    numero(u"libres"_s, uno.libresBytes);
    numero(u"total"_s, uno.totalBytes);
    return objeto;
}

void contar(const QList<Dispositivo> &dispositivos, bool json)
{
    if (json) {
        QJsonArray lista;
        for (const auto &uno : dispositivos)
            lista << enJson(uno);
        return Consola::resultado(QJsonDocument(lista));
    }
    for (const auto &uno : dispositivos)
        Consola::resultado(enPalabras(uno));
    if (dispositivos.isEmpty())
        Consola::palabras(u"No veo ningún iPhone"_s);
}

} // namespace

int ordenDispositivos(const OpcionesDeOrden &opciones)
{
    if (!Consola::hayHerramientas())
        return SalidaFaltaHerramienta;
    Modelo modelo;
    QObject::connect(&modelo, &Modelo::refrescado, &modelo, [&] {
        contar(modelo.dispositivos(), opciones.json);
        QCoreApplication::exit(SalidaBien);
    });
    return QCoreApplication::exec();
}

} // namespace vellora
