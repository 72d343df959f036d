#include "engine/device/Afc.h"

#include <QTimeZone>

#include <algorithm>
#include <libimobiledevice/house_arrest.h>
#include <libimobiledevice/service.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

// Beyond this nothing is gained, and what is read no longer stays near the processor until it is written.
constexpr qint64 bloque = 256LL * 1024;

constexpr char16_t primerEscape = 0xDC00;

using Lista = std::unique_ptr<char *, Cierra<afc_dictionary_free>>;

/// An open file of the phone.
class Abierto
{
public:
    Abierto(afc_client_t elCliente, const QString &ruta, afc_file_mode_t modo) : cliente(elCliente)
    {
        const Plazo plazo;
        error = afc_file_open(cliente, bytesDeRuta(ruta).constData(), modo, &asa);
    }
    ~Abierto()
    {
        const Plazo plazo;
        if (error == AFC_E_SUCCESS)
            afc_file_close(cliente, asa);
    }
    Q_DISABLE_COPY_MOVE(Abierto)

    afc_error_t fallo() const { return error; }
    uint64_t numero() const { return asa; }

private:
    afc_client_t cliente;
    uint64_t asa = 0;
    afc_error_t error = AFC_E_UNKNOWN_ERROR;
};

QDateTime momento(const QByteArray &nanosegundos)
{
    constexpr qint64 enUnMilisegundo = 1'000'000;
    bool bien = false;
    const auto valor = nanosegundos.toLongLong(&bien);
    return bien ? QDateTime::fromMSecsSinceEpoch(valor / enUnMilisegundo, QTimeZone::utc()) : QDateTime();
}

FichaAfc::Tipo tipoDe(const QByteArray &formato)
{
    if (formato == "S_IFREG")
        return FichaAfc::Tipo::Fichero;
    if (formato == "S_IFDIR")
        return FichaAfc::Tipo::Carpeta;
    return formato == "S_IFLNK" ? FichaAfc::Tipo::Enlace : FichaAfc::Tipo::Otro;
}

void ponerDato(FichaAfc &ficha, QByteArrayView clave, const QByteArray &valor)
{
    if (clave == "st_ifmt") {
        ficha.tipo = tipoDe(valor);
    } else if (clave == "st_size") {
        ficha.tamano = valor.toLongLong();
    } else if (clave == "st_mtime") {
        ficha.modificado = momento(valor);
        ficha.modificacion = valor.toLongLong();
    } else if (clave == "st_birthtime") {
        ficha.nacimiento = valor.toLongLong();
    } else if (clave == "st_blocks") {
        ficha.bloques = valor.toLongLong();
    } else if (clave == "st_nlink") {
        ficha.enlaces = valor.toLongLong();
    }
}

/// Waits until the phone says that the reports are where they can be read.
bool trasladarInformes(const Telefono &telefono)
{
    const auto mudanza =
        telefono.abrir<service_client_private, service_client_new, service_client_free>("com.apple.crashreportmover");
    if (!mudanza)
        return false;
    constexpr uint32_t largo = 4; // "ping"
    char palabra[largo + 1] = {};
    uint32_t recibidos = 0;
    const Plazo plazo(Plazo::largo);
    return service_receive(mudanza->get(), palabra, largo, &recibidos) == SERVICE_E_SUCCESS &&
           QByteArrayView(palabra) == "ping";
}

} // namespace

QString rutaDe(QByteArrayView bytes)
{
    if (bytes.isValidUtf8())
        return QString::fromUtf8(bytes);
    QString ruta;
    for (const char byte : bytes) {
        const char16_t valor = static_cast<unsigned char>(byte);
        ruta += QChar(static_cast<char16_t>(valor < 0x80 ? valor : primerEscape + valor));
    }
    return ruta;
}

QByteArray bytesDeRuta(const QString &ruta)
{
    QByteArray bytes;
    qsizetype desde = 0;
    for (qsizetype i = 0; i < ruta.size(); ++i) {
        const auto letra = ruta[i].unicode();
        if (ruta[i].isHighSurrogate())
            ++i; // a whole pair
        else if (letra >= primerEscape + 0x80 && letra <= primerEscape + 0xFF) {
            bytes += QStringView(ruta).sliced(desde, i - desde).toUtf8() + static_cast<char>(letra - primerEscape);
            desde = i + 1;
        }
    }
    return bytes + QStringView(ruta).sliced(desde).toUtf8();
}

Resultado<Afc> Afc::abrir(const Telefono &telefono, const char *servicio)
{
    auto cliente = telefono.abrir<afc_client_private, afc_client_new, afc_client_free>(servicio);
    if (!cliente)
        return Resultado<Afc>::fallo(cliente.motivo());
    return Afc(*std::move(cliente));
}

Resultado<Afc> Afc::abrir(const Telefono &telefono)
{
    return abrir(telefono, "com.apple.afc");
}

Resultado<Afc> Afc::informesDeFallos(const Telefono &telefono)
{
    if (!trasladarInformes(telefono))
        return Resultado<Afc>::fallo(u"El iPhone no ha preparado sus informes de fallos. Vuelve a intentarlo."_s);
    return abrir(telefono, "com.apple.crashreportcopymobile");
}

Resultado<Afc> Afc::documentosDe(const Telefono &telefono, const QString &app)
{
    auto casa = telefono.abrir<house_arrest_client_private, house_arrest_client_new, house_arrest_client_free>(
        "com.apple.mobile.house_arrest");
    if (!casa)
        return Resultado<Afc>::fallo(casa.motivo());
    plist_t respuesta = nullptr;
    const Plazo plazo;
    if (house_arrest_send_command(casa->get(), "VendDocuments", app.toUtf8().constData()) != HOUSE_ARREST_E_SUCCESS ||
        house_arrest_get_result(casa->get(), &respuesta) != HOUSE_ARREST_E_SUCCESS)
        return Resultado<Afc>::fallo(Telefono::sinRespuesta("house_arrest"));
    if (Plist(respuesta).raiz()["Status"].texto() != u"Complete"_s)
        return Resultado<Afc>::fallo(u"Esa app no está en el iPhone o no comparte sus documentos."_s);
    afc_client_t cliente = nullptr;
    if (afc_client_new_from_house_arrest_client(casa->get(), &cliente) != AFC_E_SUCCESS)
        return Resultado<Afc>::fallo(Telefono::sinRespuesta("house_arrest"));
    return Afc(Cliente(cliente), Casa(casa->release(), Cierra<house_arrest_client_free>()));
}

QString Afc::motivoDe(afc_error_t error, const QString &ruta)
{
    noEstaba = error == AFC_E_OBJECT_NOT_FOUND;
    switch (error) {
    case AFC_E_OBJECT_NOT_FOUND:
        return u"No está en el iPhone: "_s + ruta;
    case AFC_E_PERM_DENIED:
        return u"El iPhone no deja tocarlo: "_s + ruta;
    case AFC_E_NO_SPACE_LEFT:
        return u"El iPhone no tiene sitio."_s;
    case AFC_E_DIR_NOT_EMPTY:
        return u"La carpeta no está vacía: "_s + ruta;
    case AFC_E_MUX_ERROR:
    case AFC_E_NOT_ENOUGH_DATA:
    case AFC_E_OP_TIMEOUT:
    case AFC_E_SERVICE_NOT_CONNECTED:
        sinTelefono = true;
        return u"El iPhone ha dejado de responder. Mira el cable y vuelve a intentarlo."_s;
    default:
        return u"El iPhone no ha podido con %1 (AFC, %2)."_s.arg(ruta).arg(error);
    }
}

std::optional<QString> Afc::hecho(afc_error_t error, const QString &ruta)
{
    return error == AFC_E_SUCCESS ? std::nullopt : std::optional(motivoDe(error, ruta));
}

afc_error_t Afc::confirmar()
{
    const Plazo plazo;
    char **bruta = nullptr;
    const auto error = afc_get_file_info(cliente.get(), "/", &bruta);
    const Lista lista(bruta);
    return error;
}

Resultado<QStringList> Afc::listar(const QString &carpeta)
{
    const Plazo plazo;
    char **bruta = nullptr;
    auto error = afc_read_directory(cliente.get(), bytesDeRuta(carpeta).constData(), &bruta);
    const Lista lista(bruta);
    if (error == AFC_E_SUCCESS)
        error = confirmar();
    if (error != AFC_E_SUCCESS)
        return Resultado<QStringList>::fallo(motivoDe(error, carpeta));
    QStringList nombres;
    for (auto *nombre = bruta; nombre != nullptr && *nombre != nullptr; ++nombre) {
        if (qstrcmp(*nombre, ".") != 0 && qstrcmp(*nombre, "..") != 0)
            nombres << rutaDe(*nombre);
    }
    return nombres;
}

Resultado<FichaAfc> Afc::ficha(const QString &ruta)
{
    const Plazo plazo;
    char **bruta = nullptr;
    const auto error = afc_get_file_info(cliente.get(), bytesDeRuta(ruta).constData(), &bruta);
    const Lista lista(bruta);
    if (error != AFC_E_SUCCESS)
        return Resultado<FichaAfc>::fallo(motivoDe(error, ruta));
    FichaAfc ficha;
    // Keys and values by turns.
    for (auto *clave = bruta; clave != nullptr && clave[0] != nullptr && clave[1] != nullptr; clave += 2)
        ponerDato(ficha, *clave, QByteArray(clave[1]));
    return ficha;
}

Resultado<qint64> Afc::leer(const QString &ruta, const Recibe &recibe)
{
    const auto como = ficha(ruta);
    return como ? leer(ruta, *como, recibe) : Resultado<qint64>::fallo(como.motivo());
}

Resultado<qint64> Afc::leer(const QString &ruta, const FichaAfc &como, const Recibe &recibe)
{
    const auto haCambiado = [&] {
        return Resultado<qint64>::fallo(u"Ha cambiado mientras se leía: "_s + ruta);
    };
    const Abierto fichero(cliente.get(), ruta, AFC_FOPEN_RDONLY);
    if (fichero.fallo() != AFC_E_SUCCESS)
        return Resultado<qint64>::fallo(motivoDe(fichero.fallo(), ruta));
    // Never more than there is: of an answer cut short, the library copies as much as was asked for, out of a block as
    // long as the answer.
    QByteArray trozo(std::min(bloque, como.tamano), Qt::Uninitialized);
    qint64 total = 0;
    while (total < como.tamano) {
        const auto pedidos = static_cast<uint32_t>(std::min(bloque, como.tamano - total));
        uint32_t leidos = 0;
        const auto error = [&] {
            const Plazo plazo;
            return afc_file_read(cliente.get(), fichero.numero(), trozo.data(), pedidos, &leidos);
        }();
        if (error != AFC_E_SUCCESS && error != AFC_E_END_OF_DATA)
            return Resultado<qint64>::fallo(motivoDe(error, ruta));
        if (leidos == 0)
            return haCambiado();
        total += leidos;
        if (!recibe(QByteArrayView(trozo.constData(), leidos)))
            return total;
    }
    const auto ahora = ficha(ruta);
    if (!ahora)
        return Resultado<qint64>::fallo(ahora.motivo());
    return *ahora == como ? Resultado(total) : haCambiado();
}

Resultado<qint64> Afc::escribir(const QString &ruta, const std::function<QByteArray()> &da)
{
    const Abierto fichero(cliente.get(), ruta, AFC_FOPEN_WRONLY);
    if (fichero.fallo() != AFC_E_SUCCESS)
        return Resultado<qint64>::fallo(motivoDe(fichero.fallo(), ruta));
    qint64 total = 0;
    for (auto trozo = da(); !trozo.isEmpty(); trozo = da()) {
        uint32_t escritos = 0;
        const auto largo = static_cast<uint32_t>(trozo.size());
        const auto error = [&] {
            const Plazo plazo;
            return afc_file_write(cliente.get(), fichero.numero(), trozo.constData(), largo, &escritos);
        }();
        // The count means nothing after a failure.
        if (error != AFC_E_SUCCESS || escritos != largo)
            return Resultado<qint64>::fallo(motivoDe(error == AFC_E_SUCCESS ? AFC_E_IO_ERROR : error, ruta));
        total += trozo.size();
    }
    return total;
}

std::optional<QString> Afc::crearCarpeta(const QString &ruta)
{
    const Plazo plazo;
    return hecho(afc_make_directory(cliente.get(), bytesDeRuta(ruta).constData()), ruta);
}

std::optional<QString> Afc::renombrar(const QString &desde, const QString &a)
{
    const Plazo plazo;
    return hecho(afc_rename_path(cliente.get(), bytesDeRuta(desde).constData(), bytesDeRuta(a).constData()), desde);
}

std::optional<QString> Afc::borrar(const QString &ruta)
{
    const Plazo plazo;
    return hecho(afc_remove_path(cliente.get(), bytesDeRuta(ruta).constData()), ruta);
}

std::optional<QString> Afc::borrarConLoDeDentro(const QString &ruta)
{
    const Plazo plazo(Plazo::largo);
    return hecho(afc_remove_path_and_contents(cliente.get(), bytesDeRuta(ruta).constData()), ruta);
}

} // namespace vellora::motor
