#include "Ajustes.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace simulado
{

std::optional<Confianza> leerConfianza(const QString &texto)
{
    if (texto == "si"_L1)
        return Confianza::Si;
    if (texto == "pendiente"_L1)
        return Confianza::Pendiente;
    if (texto == "no"_L1)
        return Confianza::No;
    return {};
}

std::optional<AjustesTelefono> leerTelefono(const QJsonObject &entrada, QString &motivo)
{
    AjustesTelefono ajustes;
    ajustes.udid = entrada["udid"_L1].toString();
    if (ajustes.udid.isEmpty() || ajustes.udid.contains(u'/') || ajustes.udid.startsWith(u'.')) {
        motivo = u"El teléfono no tiene un udid válido"_s;
        return {};
    }
    const auto confianza = leerConfianza(entrada["confianza"_L1].toString(u"si"_s));
    const QString conexion = entrada["conexion"_L1].toString(u"USB"_s);
    ajustes.porCable = conexion == "USB"_L1 || conexion == "ambas"_L1;
    ajustes.porRed = conexion == "Network"_L1 || conexion == "ambas"_L1;
    if (!confianza || (!ajustes.porCable && !ajustes.porRed)) {
        motivo = u"confianza o conexion tiene un valor desconocido"_s;
        return {};
    }
    ajustes.confianza = *confianza;
    ajustes.nombre = entrada["nombre"_L1].toString();
    ajustes.producto = entrada["producto"_L1].toString();
    ajustes.version = entrada["version"_L1].toString();
    ajustes.conectado = entrada["conectado"_L1].toBool(true);
    ajustes.bloqueado = entrada["bloqueado"_L1].toBool(false);
    ajustes.tls = entrada["tls"_L1].toBool(true);
    ajustes.contenido = entrada["contenido"_L1].toString();
    ajustes.ruido = entrada["ruido"_L1].toBool(false);
    return ajustes;
}

AjustesTelefono telefonoDeMarta(quint32 semilla)
{
    const QByteArray huella = QCryptographicHash::hash(QByteArray::number(semilla), QCryptographicHash::Sha1).toHex();
    AjustesTelefono ajustes;
    // Chip, dash, sixteen hexadecimal digits: the form of every identifier since 2018.
    ajustes.udid = u"00008120-%1%2"_s.arg(QString::fromLatin1(huella.left(10)).toUpper(), u"4C1E9A"_s);
    ajustes.nombre = u"iPhone de Marta"_s;
    ajustes.producto = u"iPhone15,2"_s;
    ajustes.version = u"17.5.1"_s;
    return ajustes;
}

QString leerEstado(const QString &ruta, QList<AjustesTelefono> &telefonos)
{
    QFile fichero(ruta);
    if (!fichero.open(QIODevice::ReadOnly))
        return u"No se puede leer %1"_s.arg(ruta);
    QJsonParseError error;
    const QJsonDocument documento = QJsonDocument::fromJson(fichero.readAll(), &error);
    if (!documento.isObject() || !documento["telefonos"_L1].isArray())
        return u"%1 no es un estado válido: %2"_s.arg(ruta, error.errorString());
    const QJsonArray entradas = documento["telefonos"_L1].toArray();
    for (const QJsonValue entrada : entradas) {
        QString motivo;
        const auto telefono = leerTelefono(entrada.toObject(), motivo);
        if (!telefono)
            return motivo;
        telefonos.append(*telefono);
    }
    return {};
}

} // namespace simulado
