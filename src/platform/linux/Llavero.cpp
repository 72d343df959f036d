#include "platform/Llavero.h"

#include <QStringDecoder>

#include <chrono>
#include <condition_variable>
#include <libsecret/secret.h>
#include <memory>
#include <mutex>
#include <thread>

using namespace Qt::StringLiterals;

namespace vellora::Llavero
{

namespace
{

constexpr int segundosDeEspera = 8;
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
    /// Nobody who could answer, rather than one who does not.
    bool nadie() const
    {
        const bool sinBus =
            error->domain == G_IO_ERROR && error->code != G_IO_ERROR_TIMED_OUT && error->code != G_IO_ERROR_CANCELLED;
        return sinBus || g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) ||
               g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) ||
               g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND);
    }

private:
    GError *error = nullptr;
};

/// Ends the calls of one question after some seconds: what waits for a store that hangs would wait on.
class Plazo
{
public:
    Plazo()
        : reloj([this] {
            std::unique_lock cerrojo(mutex);
            if (!alAcabar.wait_for(cerrojo, std::chrono::seconds(segundosDeEspera), [this] { return acabado; }))
                g_cancellable_cancel(*this);
        })
    {
    }
    Plazo(const Plazo &) = delete;
    Plazo &operator=(const Plazo &) = delete;
    ~Plazo()
    {
        {
            const std::lock_guard cerrojo(mutex);
            acabado = true;
        }
        alAcabar.notify_all();
        reloj.join();
    }
    operator GCancellable *() { return cancelable.get(); }

private:
    Objetos<GCancellable> cancelable{g_cancellable_new()};
    std::mutex mutex;
    std::condition_variable alAcabar;
    bool acabado = false;
    std::thread reloj;
};

Estado porFallo(const Fallo &fallo)
{
    return fallo.nadie() ? Estado::NoHay : Estado::NoContesta;
}

std::optional<QString> enTexto(SecretValue *valor)
{
    gsize largo = 0;
    const char *bytes = secret_value_get(valor, &largo);
    QStringDecoder lector(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString texto = lector(QByteArrayView(bytes, static_cast<qsizetype>(largo)));
    return lector.hasError() ? std::nullopt : std::optional(texto);
}

/// The store's own collection, to see whether it is there and open. `coleccion` is set for the states of one that is.
Estado estadoDelAlmacen(GCancellable *plazo, Objetos<SecretCollection> &coleccion)
{
    Fallo fallo;
    const Objetos<SecretService> almacen(secret_service_get_sync(SECRET_SERVICE_NONE, plazo, &fallo));
    if (!almacen)
        return porFallo(fallo);
    coleccion.reset(secret_collection_for_alias_sync(almacen.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE,
                                                     plazo, &fallo));
    if (!coleccion)
        return fallo ? porFallo(fallo) : Estado::NoHay;
    return secret_collection_get_locked(coleccion.get()) != FALSE ? Estado::Cerrado : Estado::SinClave;
}

Lectura leerDe(const char *deServicio, const QString &udid, GCancellable *plazo)
{
    Fallo fallo;
    // A lookup would ask to unlock and wait for the answer; a search does not.
    constexpr auto todas = static_cast<SecretSearchFlags>(SECRET_SEARCH_ALL | SECRET_SEARCH_LOAD_SECRETS);
    GList *hallados = secret_password_search_sync(&esquema, todas, plazo, &fallo, "service", deServicio, "account",
                                                  udid.toUtf8().constData(), nullptr);
    Lectura lectura{fallo ? porFallo(fallo) : Estado::SinClave, {}};
    for (const GList *uno = hallados; uno != nullptr && lectura.estado != Estado::Hallada; uno = uno->next) {
        auto *pieza = SECRET_ITEM(uno->data);
        if (secret_item_get_locked(pieza) != FALSE)
            lectura.estado = Estado::Cerrado;
        SecretValue *valor = secret_item_get_secret(pieza);
        if (valor == nullptr)
            continue;
        if (const auto texto = enTexto(valor))
            lectura = {Estado::Hallada, *texto};
        secret_value_unref(valor);
    }
    g_list_free_full(hallados, g_object_unref);
    return lectura;
}

/// Brings up the question that unlocks the store and waits for its answer, which may take the owner a while.
bool desbloquear()
{
    Fallo fallo;
    const Objetos<SecretService> almacen(secret_service_get_sync(SECRET_SERVICE_NONE, nullptr, &fallo));
    if (!almacen)
        return false;
    const Objetos<SecretCollection> coleccion(secret_collection_for_alias_sync(
        almacen.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, nullptr, &fallo));
    if (!coleccion)
        return false;
    GList cual{coleccion.get(), nullptr, nullptr};
    return secret_service_unlock_sync(almacen.get(), &cual, nullptr, nullptr, &fallo) > 0;
}

Lectura consultarUnaVez(const QString &udid)
{
    Plazo plazo;
    Objetos<SecretCollection> coleccion;
    const auto almacen = estadoDelAlmacen(plazo, coleccion);
    if (almacen == Estado::NoHay || almacen == Estado::NoContesta)
        return {almacen, {}};
    auto lectura = leerDe(servicio, udid, plazo);
    if (lectura.estado == Estado::SinClave) {
        lectura = leerDe(servicioAnterior, udid, plazo);
        if (lectura.estado == Estado::Hallada)
            guardar(lectura.clave, udid);
    }
    // Not every store tells what it holds while it is locked.
    if (lectura.estado == Estado::SinClave && almacen == Estado::Cerrado)
        lectura.estado = Estado::Cerrado;
    return lectura;
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

Lectura consultar(const QString &udid, Abrir abrir)
{
    auto lectura = consultarUnaVez(udid);
    if (lectura.estado == Estado::Cerrado && abrir == Abrir::Preguntando && desbloquear())
        lectura = consultarUnaVez(udid);
    return lectura;
}

QString porQue(Estado estado)
{
    switch (estado) {
    case Estado::SinClave:
        return u"En el Llavero de este ordenador no está la contraseña de las copias de este iPhone."_s;
    case Estado::Cerrado:
        return u"El Llavero de este ordenador está cerrado. Ábrelo con su contraseña y vuelve a intentarlo."_s;
    case Estado::NoContesta:
        return u"El Llavero de este ordenador no contesta. Cierra la sesión, vuelve a entrar e inténtalo otra vez."_s;
    case Estado::NoHay:
        return u"En este ordenador no hay un Llavero donde guardar contraseñas."_s;
    case Estado::Hallada:
        break;
    }
    return {};
}

bool disponible()
{
    Plazo plazo;
    Objetos<SecretCollection> coleccion;
    const auto estado = estadoDelAlmacen(plazo, coleccion);
    return estado == Estado::SinClave || estado == Estado::Cerrado;
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
    auto lectura = consultar(udid);
    return lectura.estado == Estado::Hallada ? std::optional(lectura.clave) : std::nullopt;
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
