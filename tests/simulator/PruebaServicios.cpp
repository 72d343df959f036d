#include "support/TelefonoSimulado.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <libimobiledevice/afc.h>
#include <libimobiledevice/diagnostics_relay.h>
#include <libimobiledevice/installation_proxy.h>
#include <libimobiledevice/libimobiledevice.h>
#include <libimobiledevice/lockdown.h>
#include <libimobiledevice/sbservices.h>
#include <memory>
#include <plist/plist.h>

using namespace Qt::StringLiterals;

namespace
{

template <auto liberar> struct Liberar {
    template <typename T> void operator()(T *cosa) const { liberar(cosa); }
};
using Dispositivo = std::unique_ptr<idevice_private, Liberar<idevice_free>>;
using Afc = std::unique_ptr<afc_client_private, Liberar<afc_client_free>>;
using Plist = std::unique_ptr<void, Liberar<plist_free>>;

Dispositivo abrir(const QString &udid)
{
    idevice_t dispositivo = nullptr;
    idevice_new(&dispositivo, udid.toUtf8().constData());
    return Dispositivo(dispositivo);
}

Afc abrirAfc(const Dispositivo &dispositivo)
{
    afc_client_t cliente = nullptr;
    afc_client_start_service(dispositivo.get(), &cliente, "prueba");
    return Afc(cliente);
}

QStringList listar(const Afc &afc, const char *carpeta)
{
    char **nombres = nullptr;
    if (afc_read_directory(afc.get(), carpeta, &nombres) != AFC_E_SUCCESS)
        return {u"(error)"_s};
    QStringList lista;
    for (char **uno = nombres; *uno != nullptr; ++uno)
        lista << QString::fromUtf8(*uno);
    afc_dictionary_free(nombres);
    lista.sort();
    return lista;
}

QMap<QString, QString> datosDe(const Afc &afc, const char *ruta)
{
    char **pares = nullptr;
    QMap<QString, QString> mapa;
    if (afc_get_file_info(afc.get(), ruta, &pares) != AFC_E_SUCCESS)
        return mapa;
    for (char **uno = pares; uno[0] != nullptr && uno[1] != nullptr; uno += 2)
        mapa[QString::fromUtf8(uno[0])] = QString::fromUtf8(uno[1]);
    afc_dictionary_free(pares);
    return mapa;
}

uint64_t abrirFichero(const Afc &afc, const char *ruta, afc_file_mode_t modo)
{
    uint64_t fichero = 0;
    afc_file_open(afc.get(), ruta, modo, &fichero);
    return fichero;
}

QByteArray leer(const Afc &afc, const char *ruta)
{
    const auto fichero = abrirFichero(afc, ruta, AFC_FOPEN_RDONLY);
    QByteArray todo;
    QByteArray trozo(100000, '\0');
    uint32_t leidos = 0;
    while (afc_file_read(afc.get(), fichero, trozo.data(), static_cast<uint32_t>(trozo.size()), &leidos) ==
               AFC_E_SUCCESS &&
           leidos > 0)
        todo += trozo.first(leidos);
    afc_file_close(afc.get(), fichero);
    return todo;
}

void escribir(const Afc &afc, const char *ruta, const QByteArray &bytes)
{
    const auto fichero = abrirFichero(afc, ruta, AFC_FOPEN_WRONLY);
    uint32_t escritos = 0;
    QCOMPARE(afc_file_write(afc.get(), fichero, bytes.constData(), static_cast<uint32_t>(bytes.size()), &escritos),
             AFC_E_SUCCESS);
    QCOMPARE(escritos, static_cast<uint32_t>(bytes.size()));
    afc_file_close(afc.get(), fichero);
}

} // namespace

/// The simulated phone's services through the unmodified client library.
class PruebaServicios : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        telefono = std::make_unique<TelefonoSimulado>();
        QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
        dispositivo = abrir(telefono->udid());
        QVERIFY(dispositivo);
    }
    void cleanup()
    {
        dispositivo.reset();
        telefono.reset();
    }
    void leerElCarrete();
    void escribirYBorrar();
    void nadieSaleDeLaRaiz();
    void cerrojosYAverias();
    void aplicaciones();
    void diagnostico();

private:
    std::unique_ptr<TelefonoSimulado> telefono;
    Dispositivo dispositivo;
};

void PruebaServicios::leerElCarrete()
{
    const auto afc = abrirAfc(dispositivo);
    QVERIFY(afc);
    QVERIFY(listar(afc, "/").contains(u"DCIM"_s));
    const auto fotos = listar(afc, "/DCIM/100APPLE").filter(u"IMG_"_s);
    QVERIFY(!fotos.isEmpty());
    const auto ruta = "/DCIM/100APPLE/" + fotos.first().toUtf8();
    QFile enElTelefono(telefono->contenido(telefono->udid()) + u"/media"_s + QString::fromUtf8(ruta));
    QVERIFY(enElTelefono.open(QIODevice::ReadOnly));
    QCOMPARE(leer(afc, ruta.constData()), enElTelefono.readAll());
    const auto datos = datosDe(afc, ruta.constData());
    QCOMPARE(datos[u"st_size"_s].toLongLong(), enElTelefono.size());
    QCOMPARE(datos[u"st_ifmt"_s], u"S_IFREG"_s);
    QCOMPARE(datos[u"st_mtime"_s].toLongLong() / 1'000'000'000,
             QFileInfo(enElTelefono).lastModified().toSecsSinceEpoch());
    QCOMPARE(datosDe(afc, "/DCIM")[u"st_ifmt"_s], u"S_IFDIR"_s);
    QVERIFY(datosDe(afc, "/DCIM/no-existe").isEmpty());
}

void PruebaServicios::escribirYBorrar()
{
    const auto afc = abrirAfc(dispositivo);
    QVERIFY(afc);
    QCOMPARE(afc_make_directory(afc.get(), "/Downloads/ñ/dentro"), AFC_E_SUCCESS);
    escribir(afc, "/Downloads/ñ/a.txt", "hola, mundo");
    const auto fichero = abrirFichero(afc, "/Downloads/ñ/a.txt", AFC_FOPEN_RW);
    uint64_t donde = 0;
    QCOMPARE(afc_file_seek(afc.get(), fichero, -5, SEEK_END), AFC_E_SUCCESS);
    QCOMPARE(afc_file_tell(afc.get(), fichero, &donde), AFC_E_SUCCESS);
    QCOMPARE(donde, 6U);
    QCOMPARE(afc_file_truncate(afc.get(), fichero, 4), AFC_E_SUCCESS);
    afc_file_close(afc.get(), fichero);
    QCOMPARE(leer(afc, "/Downloads/ñ/a.txt"), QByteArray("hola"));
    QCOMPARE(afc_truncate(afc.get(), "/Downloads/ñ/a.txt", 2), AFC_E_SUCCESS);
    QCOMPARE(afc_set_file_time(afc.get(), "/Downloads/ñ/a.txt", 1'600'000'000'000'000'000ULL), AFC_E_SUCCESS);
    QCOMPARE(datosDe(afc, "/Downloads/ñ/a.txt")[u"st_mtime"_s], u"1600000000000000000"_s);
    QCOMPARE(afc_rename_path(afc.get(), "/Downloads/ñ/a.txt", "/Downloads/ñ/b.txt"), AFC_E_SUCCESS);
    QCOMPARE(afc_make_link(afc.get(), AFC_SYMLINK, "b.txt", "/Downloads/ñ/enlace"), AFC_E_SUCCESS);
    QCOMPARE(datosDe(afc, "/Downloads/ñ/enlace")[u"st_ifmt"_s], u"S_IFLNK"_s);
    QCOMPARE(leer(afc, "/Downloads/ñ/b.txt"), QByteArray("ho"));
    QCOMPARE(afc_remove_path(afc.get(), "/Downloads/ñ"), AFC_E_DIR_NOT_EMPTY);
    QCOMPARE(afc_remove_path(afc.get(), "/Downloads/ñ/b.txt"), AFC_E_SUCCESS);
    QCOMPARE(afc_remove_path(afc.get(), "/Downloads/ñ/b.txt"), AFC_E_OBJECT_NOT_FOUND);
    QCOMPARE(afc_remove_path_and_contents(afc.get(), "/Downloads/ñ"), AFC_E_SUCCESS);
    QVERIFY(!listar(afc, "/Downloads").contains(u"ñ"_s));
}

void PruebaServicios::nadieSaleDeLaRaiz()
{
    const auto afc = abrirAfc(dispositivo);
    QVERIFY(afc);
    const auto raiz = listar(afc, "/");
    for (const auto *ruta : {"/..", "../..", "/DCIM/../../..", "/./.."})
        QVERIFY2(listar(afc, ruta) == raiz || listar(afc, ruta) == QStringList{u"(error)"_s}, ruta);
    QCOMPARE(abrirFichero(afc, "/../telefono.json", AFC_FOPEN_RDONLY), 0U);
    QCOMPARE(afc_make_link(afc.get(), AFC_SYMLINK, "../..", "/Downloads/salida"), AFC_E_SUCCESS);
    QVERIFY(!listar(afc, "/Downloads/salida").contains(u"telefono.json"_s));
    QVERIFY(!listar(afc, "/Downloads/salida/..").contains(u"telefono.json"_s));
    QCOMPARE(abrirFichero(afc, "/Downloads/salida/telefono.json", AFC_FOPEN_RDONLY), 0U);
    QCOMPARE(listar(afc, "/"), raiz); // it was refused by a connection that still works
    QVERIFY(raiz.contains(u"Downloads"_s));
}

void PruebaServicios::cerrojosYAverias()
{
    auto uno = abrirAfc(dispositivo);
    const auto otro = abrirAfc(dispositivo);
    QVERIFY(uno && otro);
    const auto primero = abrirFichero(uno, "/Downloads/cerrojo", AFC_FOPEN_WR);
    const auto segundo = abrirFichero(otro, "/Downloads/cerrojo", AFC_FOPEN_RW);
    QCOMPARE(afc_file_lock(uno.get(), primero, AFC_LOCK_EX), AFC_E_SUCCESS);
    QCOMPARE(afc_file_lock(otro.get(), segundo, AFC_LOCK_EX), AFC_E_OP_WOULD_BLOCK);
    uno.reset(); // a connection that ends gives its locks back
    QTRY_COMPARE(afc_file_lock(otro.get(), segundo, AFC_LOCK_EX), AFC_E_SUCCESS);
    QVERIFY(
        telefono->orden(QJsonObject{{u"orden"_s, u"fallar"_s}, {u"peticion"_s, u"ReadDir:/DCIM"_s}, {u"error"_s, 10}})
            .value(u"bien"_s)
            .toBool());
    QCOMPARE(listar(otro, "/DCIM"), QStringList{u"(error)"_s});
    QVERIFY(
        telefono->orden(QJsonObject{{u"orden"_s, u"llenar_disco"_s}, {u"lleno"_s, true}}).value(u"bien"_s).toBool());
    uint32_t escritos = 0;
    QVERIFY(afc_file_write(otro.get(), segundo, "x", 1, &escritos) != AFC_E_SUCCESS);
    QVERIFY(telefono->orden(u"desconectar"_s));
    QCOMPARE(listar(otro, "/"), QStringList{u"(error)"_s});
}

void PruebaServicios::aplicaciones()
{
    instproxy_client_t cliente = nullptr;
    QCOMPARE(instproxy_client_start_service(dispositivo.get(), &cliente, "prueba"), INSTPROXY_E_SUCCESS);
    const std::unique_ptr<instproxy_client_private, Liberar<instproxy_client_free>> guarda(cliente);
    const auto deUsuario = [&] {
        const Plist opciones(instproxy_client_options_new());
        instproxy_client_options_add(opciones.get(), "ApplicationType", "User", nullptr);
        plist_t lista = nullptr;
        instproxy_browse(cliente, opciones.get(), &lista);
        const Plist suelta(lista);
        QStringList nombres;
        for (uint32_t i = 0; lista != nullptr && i < plist_array_get_size(lista); ++i) {
            auto *id = plist_dict_get_item(plist_array_get_item(lista, i), "CFBundleIdentifier");
            nombres << QString::fromUtf8(plist_get_string_ptr(id, nullptr));
        }
        return nombres;
    };
    const auto apps = deUsuario();
    QVERIFY(apps.size() > 5);
    QVERIFY(apps.contains(u"net.whatsapp.WhatsApp"_s));

    sbservices_client_t pantalla = nullptr;
    QCOMPARE(sbservices_client_start_service(dispositivo.get(), &pantalla, "prueba"), SBSERVICES_E_SUCCESS);
    char *png = nullptr;
    uint64_t largo = 0;
    QCOMPARE(sbservices_get_icon_pngdata(pantalla, "net.whatsapp.WhatsApp", &png, &largo), SBSERVICES_E_SUCCESS);
    QVERIFY(largo > 100 && QByteArray(png, 4) == "\x89PNG");
    free(png);
    sbservices_client_free(pantalla);

    QCOMPARE(instproxy_uninstall(cliente, "net.whatsapp.WhatsApp", nullptr, nullptr, nullptr), INSTPROXY_E_SUCCESS);
    QTRY_COMPARE(deUsuario().size(), apps.size() - 1); // the library goes on with it in the background
    QVERIFY(!deUsuario().contains(u"net.whatsapp.WhatsApp"_s));
}

void PruebaServicios::diagnostico()
{
    diagnostics_relay_client_t cliente = nullptr;
    QCOMPARE(diagnostics_relay_client_start_service(dispositivo.get(), &cliente, "prueba"),
             DIAGNOSTICS_RELAY_E_SUCCESS);
    plist_t respuesta = nullptr;
    QCOMPARE(diagnostics_relay_query_ioregistry_entry(cliente, "AppleSmartBattery", nullptr, &respuesta),
             DIAGNOSTICS_RELAY_E_SUCCESS);
    const Plist suelta(respuesta);
    auto *ciclos = plist_access_path(respuesta, 2, "IORegistry", "CycleCount");
    QVERIFY(ciclos != nullptr && plist_get_node_type(ciclos) == PLIST_UINT);
    diagnostics_relay_goodbye(cliente);
    diagnostics_relay_client_free(cliente);
}

QTEST_GUILESS_MAIN(PruebaServicios)
#include "PruebaServicios.moc"
