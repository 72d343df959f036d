#include "platform/Llavero.h"

#include <QStringDecoder>

#include <libsecret/secret.h>
#include <memory>

namespace vellora::Llavero
{

namespace
{

constexpr auto servicio = "es.vellora.copia";
constexpr auto servicioDeContrasenas = "es.vellora.contrasena";
constexpr auto servicioAnterior = "es.zarabel.tramuja.copia";

// The two attributes alone decide, so that the item is found whoever wrote it.
const SecretSchema esquema{servicio,
                           SECRET_SCHEMA_DONT_MATCH_NAME,
                           {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING}, {"account", SECRET_SCHEMA_ATTRIBUTE_STRING}},
                           0,
                           nullptr,
                           nullptr,
                           nullptr,
                           nullptr,
                           nullptr,
                           nullptr,
                           nullptr};

struct Soltar {
    void operator()(void *objeto) const { g_object_unref(objeto); }
};
template <typename Objeto> using Objetos = std::unique_ptr<Objeto, Soltar>;

/// Says why a call failed, without what it was about.
class Fallo
{
public:
    ~Fallo() { g_clear_error(&error); }
    GError **operator&() { return &error; }
    explicit operator bool() const { return error != nullptr; }

private:
    GError *error = nullptr;
};

std::optional<QString> enTexto(SecretValue *valor)
{
    if (valor == nullptr)
        return {}; // the store is locked
    gsize largo = 0;
    const char *bytes = secret_value_get(valor, &largo);
    QStringDecoder lector(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString texto = lector(QByteArrayView(bytes, static_cast<qsizetype>(largo)));
    return lector.hasError() ? std::nullopt : std::optional(texto);
}

std::optional<QString> leerDe(const char *deServicio, const QString &udid)
{
    Fallo fallo;
    // A lookup would ask to unlock and wait for the answer; a search does not.
    GList *hallados = secret_password_search_sync(&esquema, SECRET_SEARCH_LOAD_SECRETS, nullptr, &fallo, "service",
                                                  deServicio, "account", udid.toUtf8().constData(), nullptr);
    std::optional<QString> texto;
    for (const GList *uno = hallados; uno != nullptr && !texto; uno = uno->next) {
        if (SecretValue *valor = secret_item_get_secret(SECRET_ITEM(uno->data))) {
            texto = enTexto(valor);
            secret_value_unref(valor);
        }
    }
    g_list_free_full(hallados, g_object_unref);
    return texto;
}

bool guardarDe(const char *deServicio, const QString &cuenta, const QString &rotulo, const QString &clave)
{
    if (clave.contains(QChar::Null))
        return false; // the store would keep what stands before it only
    auto bytes = clave.toUtf8();
    Fallo fallo;
    // Takes the place of an item of the same attributes, so that at no moment there is neither.
    const bool escrita = secret_password_store_sync(&esquema, SECRET_COLLECTION_DEFAULT, rotulo.toUtf8().constData(),
                                                    bytes.constData(), nullptr, &fallo, "service", deServicio,
                                                    "account", cuenta.toUtf8().constData(), nullptr) != FALSE;
    bytes.fill('\0');
    return escrita;
}

bool borrarDe(const char *deServicio, const QString &udid)
{
    Fallo fallo;
    return secret_password_clear_sync(&esquema, nullptr, &fallo, "service", deServicio, "account",
                                      udid.toUtf8().constData(), nullptr) != FALSE;
}

} // namespace

bool disponible()
{
    Fallo fallo;
    const Objetos<SecretService> almacen(secret_service_get_sync(SECRET_SERVICE_NONE, nullptr, &fallo));
    if (!almacen)
        return false;
    const Objetos<SecretCollection> coleccion(secret_collection_for_alias_sync(
        almacen.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, nullptr, &fallo));
    return coleccion != nullptr;
}

bool guardar(const QString &clave, const QString &udid)
{
    const bool escrita = guardarDe(servicio, udid, QStringLiteral("Vellora: copias del iPhone ") + udid, clave);
    if (escrita)
        borrarDe(servicioAnterior, udid);
    return escrita;
}

bool guardarContrasena(const QString &donde, const QString &usuario, const QString &clave)
{
    const auto cuenta = usuario.isEmpty() ? donde : donde + QStringLiteral(" · ") + usuario;
    return guardarDe(servicioDeContrasenas, cuenta, cuenta, clave);
}

std::optional<QString> leer(const QString &udid)
{
    if (auto clave = leerDe(servicio, udid))
        return clave;
    auto anterior = leerDe(servicioAnterior, udid);
    if (anterior)
        guardar(*anterior, udid);
    return anterior;
}

bool hayClave(const QString &udid)
{
    return leer(udid).has_value();
}

bool borrar(const QString &udid)
{
    const bool actual = borrarDe(servicio, udid);
    const bool anterior = borrarDe(servicioAnterior, udid);
    return actual || anterior;
}

} // namespace vellora::Llavero
