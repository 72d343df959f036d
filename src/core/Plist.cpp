#include "core/Plist.h"

#include "core/FicheroAjeno.h"
#include "core/MedidaDePlist.h"

namespace vellora
{

namespace
{

constexpr qint64 tamanoMaximo = 64LL * 1024 * 1024;

bool es(plist_t nodo, plist_type tipo)
{
    return nodo != nullptr && plist_get_node_type(nodo) == tipo;
}

} // namespace

NodoPlist NodoPlist::operator[](const char *clave) const
{
    return NodoPlist(es(nodo, PLIST_DICT) ? plist_dict_get_item(nodo, clave) : nullptr);
}

NodoPlist NodoPlist::en(quint32 posicion) const
{
    const bool dentro = es(nodo, PLIST_ARRAY) && posicion < plist_array_get_size(nodo);
    return NodoPlist(dentro ? plist_array_get_item(nodo, posicion) : nullptr);
}

quint32 NodoPlist::tamano() const
{
    return es(nodo, PLIST_ARRAY) ? plist_array_get_size(nodo) : 0;
}

std::optional<QString> NodoPlist::texto() const
{
    if (!es(nodo, PLIST_STRING))
        return {};
    uint64_t largo = 0;
    const char *letras = plist_get_string_ptr(nodo, &largo);
    return QString::fromUtf8(letras, static_cast<qsizetype>(largo));
}

std::optional<qint64> NodoPlist::entero() const
{
    if (!es(nodo, PLIST_UINT))
        return {};
    uint64_t valor = 0;
    plist_get_uint_val(nodo, &valor);
    return static_cast<qint64>(valor); // negative numbers come as 2^64 - n
}

std::optional<bool> NodoPlist::logico() const
{
    if (!es(nodo, PLIST_BOOLEAN))
        return {};
    uint8_t valor = 0;
    plist_get_bool_val(nodo, &valor);
    return valor != 0;
}

std::optional<QByteArray> NodoPlist::datos() const
{
    if (!es(nodo, PLIST_DATA))
        return {};
    uint64_t largo = 0;
    const char *bytes = plist_get_data_ptr(nodo, &largo);
    return QByteArray(bytes, static_cast<qsizetype>(largo));
}

std::optional<quint32> NodoPlist::referencia() const
{
    if (!es(nodo, PLIST_UID))
        return {};
    uint64_t posicion = 0;
    plist_get_uid_val(nodo, &posicion);
    return posicion <= UINT32_MAX ? std::optional(static_cast<quint32>(posicion)) : std::nullopt;
}

std::optional<Plist> Plist::interpretar(const QByteArray &bytes)
{
    plist_t nodo = nullptr;
    const auto largo = static_cast<uint32_t>(bytes.size());
    switch (medirPlist(bytes)) {
    case FormaDePlist::Xml:
        plist_from_xml(bytes.constData(), largo, &nodo);
        break;
    case FormaDePlist::Binaria:
        plist_from_bin(bytes.constData(), largo, &nodo);
        break;
    case FormaDePlist::Ninguna:
        break;
    }
    return nodo == nullptr ? std::nullopt : std::optional(Plist(nodo));
}

std::optional<Plist> Plist::leer(const QString &fichero)
{
    const auto bytes = leerAjeno(fichero, tamanoMaximo);
    return bytes ? interpretar(*bytes) : std::nullopt;
}

} // namespace vellora
