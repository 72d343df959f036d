#include "LlaveroDelTelefono.h"

#include "Cifra.h"
#include "LlavesDeCopia.h"
#include "Plist.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

QByteArray der(int etiqueta, const QByteArray &contenido)
{
    QByteArray largo;
    if (contenido.size() < 0x80) {
        largo += char(contenido.size());
    } else {
        largo += '\x82';
        largo += char(contenido.size() >> 8);
        largo += char(contenido.size() & 0xFF);
    }
    return char(etiqueta) + largo + contenido;
}

constexpr int derOctetos = 0x04;
constexpr int derTexto = 0x0C;
constexpr int derSecuencia = 0x30;
constexpr int derConjunto = 0x31;

QByteArray miembro(const QString &nombre, const QByteArray &valor)
{
    return der(derSecuencia, der(derTexto, nombre.toUtf8()) + valor);
}

QByteArray numero(quint32 valor)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(valor, bytes.data());
    return bytes;
}

/// One item: version, class, its wrapped key, and the attributes under that key.
QByteArray cosa(const QJsonObject &entrada, const LlavesDeCopia &llaves)
{
    QByteArray miembros;
    for (auto it = entrada.begin(); it != entrada.end(); ++it) {
        const QByteArray texto = it->toString().toUtf8();
        if (it.key() == "clave"_L1)
            miembros += miembro(u"v_Data"_s, der(derOctetos, texto));
        else if (it.key() != "tabla"_L1 && it.key() != "clase"_L1)
            miembros += miembro(it.key(), der(derTexto, texto));
    }
    const int clase = entrada["clase"_L1].toInt();
    const QByteArray clave = alAzar(32);
    const QByteArray envuelta = llaves.envolver(clase, clave).sliced(4);
    return numero(3) + numero(quint32(clase)) + numero(quint32(envuelta.size())) + envuelta +
           cifrarGcmSinVector(clave, der(derConjunto, miembros));
}

} // namespace

QByteArray llaveroParaCopia(const QString &carpetaDelTelefono, const LlavesDeCopia &llaves)
{
    QFile fichero(carpetaDelTelefono + "/llavero.json"_L1);
    if (!fichero.open(QIODevice::ReadOnly))
        return {};
    QVariantMap tablas{{u"genp"_s, QVariantList()},
                       {u"inet"_s, QVariantList()},
                       {u"cert"_s, QVariantList()},
                       {u"keys"_s, QVariantList()}};
    const QJsonArray entradas = QJsonDocument::fromJson(fichero.readAll()).array();
    for (const auto &entrada : entradas) {
        const QString tabla = entrada["tabla"_L1].toString();
        auto lista = tablas[tabla].toList();
        lista.append(QVariantMap{{u"v_Data"_s, cosa(entrada.toObject(), llaves)}, {u"v_PersistentRef"_s, alAzar(12)}});
        tablas[tabla] = lista;
    }
    return plistBinario(tablas);
}

} // namespace simulado
