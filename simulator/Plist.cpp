#include "Plist.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QTimeZone>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <plist/plist.h>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

// Property list dates count from 2001-01-01T00:00:00Z; this is that instant in Unix time.
constexpr qint64 epocaPlist = 978307200;

struct LiberaPlist {
    void operator()(void *nodo) const { plist_free(nodo); }
};
using NodoPropio = std::unique_ptr<void, LiberaPlist>;

struct LiberaMemoria {
    void operator()(char *p) const { free(p); }
};
using TextoC = std::unique_ptr<char, LiberaMemoria>;

// Deeper than anything a computer or a backup sends; what hangs below reads as absent.
constexpr int hondoMaximo = 100;

QVariant leerNodo(plist_t nodo, int hondo);

QVariantMap leerDiccionario(plist_t nodo, int hondo)
{
    QVariantMap mapa;
    plist_dict_iter iterador = nullptr;
    plist_dict_new_iter(nodo, &iterador);
    for (;;) {
        char *clave = nullptr;
        plist_t hijo = nullptr;
        plist_dict_next_item(nodo, iterador, &clave, &hijo);
        const TextoC claveDuena(clave);
        if (!hijo)
            break;
        mapa.insert(QString::fromUtf8(clave), leerNodo(hijo, hondo + 1));
    }
    free(iterador);
    return mapa;
}

QVariantList leerLista(plist_t nodo, int hondo)
{
    QVariantList lista;
    plist_array_iter iterador = nullptr;
    plist_array_new_iter(nodo, &iterador);
    for (;;) {
        plist_t hijo = nullptr;
        plist_array_next_item(nodo, iterador, &hijo);
        if (!hijo)
            break;
        lista.append(leerNodo(hijo, hondo + 1));
    }
    free(iterador);
    return lista;
}

QVariant leerEntero(plist_t nodo)
{
    uint64_t valor = 0;
    plist_get_uint_val(nodo, &valor);
    // The library has one integer kind; negative numbers arrive as their two's complement.
    return QVariant(qint64(valor));
}

QVariant leerFecha(plist_t nodo)
{
    int32_t segundos = 0;
    int32_t micros = 0;
    plist_get_date_val(nodo, &segundos, &micros);
    return QDateTime::fromSecsSinceEpoch(qint64(segundos) + epocaPlist, QTimeZone::utc());
}

QVariant leerTexto(plist_t nodo)
{
    char *texto = nullptr;
    plist_get_string_val(nodo, &texto);
    const TextoC dueno(texto);
    return QString::fromUtf8(texto);
}

QVariant leerDatos(plist_t nodo)
{
    char *datos = nullptr;
    uint64_t largo = 0;
    plist_get_data_val(nodo, &datos, &largo);
    const TextoC dueno(datos);
    return QByteArray(datos, qsizetype(largo));
}

QVariant leerNodo(plist_t nodo, int hondo)
{
    if (hondo > hondoMaximo)
        return {};
    uint8_t logico = 0;
    double real = 0;
    uint64_t uid = 0;
    switch (plist_get_node_type(nodo)) {
    case PLIST_BOOLEAN:
        plist_get_bool_val(nodo, &logico);
        return QVariant(logico != 0);
    case PLIST_UINT:
        return leerEntero(nodo);
    case PLIST_REAL:
        plist_get_real_val(nodo, &real);
        return real;
    case PLIST_UID:
        plist_get_uid_val(nodo, &uid);
        return QVariant::fromValue(Uid{uid});
    case PLIST_STRING:
        return leerTexto(nodo);
    case PLIST_DATA:
        return leerDatos(nodo);
    case PLIST_DATE:
        return leerFecha(nodo);
    case PLIST_ARRAY:
        return leerLista(nodo, hondo);
    case PLIST_DICT:
        return leerDiccionario(nodo, hondo);
    default:
        return {};
    }
}

plist_t crearNodo(const QVariant &valor);

plist_t crearLista(const QVariantList &lista)
{
    plist_t nodo = plist_new_array();
    for (const QVariant &hijo : lista)
        plist_array_append_item(nodo, crearNodo(hijo));
    return nodo;
}

plist_t crearDiccionario(const QVariantMap &mapa)
{
    plist_t nodo = plist_new_dict();
    for (auto it = mapa.cbegin(); it != mapa.cend(); ++it)
        plist_dict_set_item(nodo, it.key().toUtf8().constData(), crearNodo(it.value()));
    return nodo;
}

plist_t crearNodo(const QVariant &valor)
{
    if (valor.metaType() == QMetaType::fromType<Uid>())
        return plist_new_uid(valor.value<Uid>().valor);
    switch (valor.typeId()) {
    case QMetaType::Bool:
        return plist_new_bool(valor.toBool() ? 1 : 0);
    case QMetaType::Double:
    case QMetaType::Float:
        return plist_new_real(valor.toDouble());
    case QMetaType::QByteArray: {
        const QByteArray datos = valor.toByteArray();
        return plist_new_data(datos.constData(), uint64_t(datos.size()));
    }
    case QMetaType::QDateTime:
        return plist_new_date(int32_t(valor.toDateTime().toSecsSinceEpoch() - epocaPlist), 0);
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return crearLista(valor.toList());
    case QMetaType::QVariantMap:
        return crearDiccionario(valor.toMap());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        return plist_new_uint(uint64_t(valor.toLongLong()));
    case QMetaType::ULongLong:
        return plist_new_uint(valor.toULongLong());
    default:
        return plist_new_string(valor.toString().toUtf8().constData());
    }
}

} // namespace

std::optional<QVariant> leerPlist(const QByteArray &bytes)
{
    plist_t crudo = nullptr;
    plist_from_memory(bytes.constData(), uint32_t(bytes.size()), &crudo);
    const NodoPropio nodo(crudo);
    if (!nodo)
        return {};
    return leerNodo(nodo.get(), 0);
}

QByteArray plistXml(const QVariant &valor)
{
    const NodoPropio nodo(crearNodo(valor));
    char *texto = nullptr;
    uint32_t largo = 0;
    plist_to_xml(nodo.get(), &texto, &largo);
    const TextoC dueno(texto);
    return QByteArray(texto, qsizetype(largo));
}

QByteArray plistBinario(const QVariant &valor)
{
    const NodoPropio nodo(crearNodo(valor));
    char *datos = nullptr;
    uint32_t largo = 0;
    plist_to_bin(nodo.get(), &datos, &largo);
    const TextoC dueno(datos);
    return QByteArray(datos, qsizetype(largo));
}

QVariant desdeJson(const QJsonValue &valor)
{
    if (valor.isArray()) {
        QVariantList lista;
        const QJsonArray elementos = valor.toArray();
        for (const QJsonValue hijo : elementos)
            lista.append(desdeJson(hijo));
        return lista;
    }
    if (valor.isObject()) {
        const QJsonObject objeto = valor.toObject();
        if (objeto.size() == 1 && objeto.contains("$datos"_L1))
            return QByteArray::fromBase64(objeto["$datos"_L1].toString().toLatin1());
        QVariantMap mapa;
        for (auto it = objeto.begin(); it != objeto.end(); ++it)
            mapa.insert(it.key(), desdeJson(it.value()));
        return mapa;
    }
    // QJsonValue keeps whole numbers as 64-bit integers, which QVariant then tells apart from reals.
    const QVariant simple = valor.toVariant();
    return simple.typeId() == QMetaType::Int ? QVariant(simple.toLongLong()) : simple;
}

QJsonValue aJson(const QVariant &valor)
{
    switch (valor.typeId()) {
    case QMetaType::QByteArray:
        return QJsonObject{{u"$datos"_s, QString::fromLatin1(valor.toByteArray().toBase64())}};
    case QMetaType::QVariantList: {
        QJsonArray lista;
        const QVariantList elementos = valor.toList();
        for (const QVariant &hijo : elementos)
            lista.append(aJson(hijo));
        return lista;
    }
    case QMetaType::QVariantMap: {
        QJsonObject objeto;
        const QVariantMap mapa = valor.toMap();
        for (auto it = mapa.cbegin(); it != mapa.cend(); ++it)
            objeto.insert(it.key(), aJson(it.value()));
        return objeto;
    }
    default:
        return QJsonValue::fromVariant(valor);
    }
}

} // namespace simulado
