#include "backups/ComprobacionDeCopia.h"
#include "core/Ejecutor.h"
#include "engine/backup/ComprobadorDeCopia.h"
#include "platform/Llavero.h"
#include "support/BusPrivado.h"
#include "support/CopiaDePrueba.h"
#include "support/LlaveroPrivado.h"

#include <QTest>

#include <openssl/evp.h>
#include <sqlite3.h>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

using Veredicto = ComprobacionDeCopia::Veredicto;
const auto clave = u"rosquillas ñ 1957"_s;

QByteArray plist(const QByteArray &dentro)
{
    return "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" + dentro + "</dict></plist>";
}

QByteArray registro(qint64 tamano)
{
    return plist("<key>$objects</key><array><string>$null</string><dict><key>Size</key><integer>" +
                 QByteArray::number(tamano) + "</integer></dict></array>");
}

/// The engine's verdict, as the window gets it.
ComprobacionDeCopia comprobar(const QString &carpeta, qsizetype rehusados = 0)
{
    Ejecutor motor;
    std::optional<ComprobacionDeCopia> dicha;
    comprobarCopia(
        motor, u"U"_s, carpeta, rehusados, [](qint64, qint64) {}, [&](const ComprobacionDeCopia &una) { dicha = una; });
    [&] {
        QTRY_VERIFY_WITH_TIMEOUT(dicha, 60000);
    }();
    return dicha.value_or(ComprobacionDeCopia());
}

/// As the phone ciphers a file.
QByteArray cifrar(const QByteArray &texto, const motor::Clave &con)
{
    QByteArray cifrado(texto.size() + 16, '\0');
    const QByteArray ceros(16, '\0');
    auto *contexto = EVP_CIPHER_CTX_new();
    int hechos = 0;
    int resto = 0;
    auto *destino = reinterpret_cast<unsigned char *>(cifrado.data());
    EVP_EncryptInit_ex(contexto, EVP_aes_256_cbc(), nullptr, con.bytes(),
                       reinterpret_cast<const unsigned char *>(ceros.constData()));
    EVP_EncryptUpdate(contexto, destino, &hechos, reinterpret_cast<const unsigned char *>(texto.constData()),
                      static_cast<int>(texto.size()));
    EVP_EncryptFinal_ex(contexto, destino + hechos, &resto);
    EVP_CIPHER_CTX_free(contexto);
    return cifrado.first(hechos + resto);
}

/// The largest photograph of an encrypted backup: its file, its key and how long the list says it is.
struct Foto {
    QString fichero;
    motor::Clave suya;
    qint64 largo = 0;
};

Foto fotoMasGrande(const QString &copia)
{
    Foto mayor;
    const QTemporaryDir trabajo;
    const auto destino = CarpetaDeDestino::abrir(trabajo.path());
    const auto abierta = motor::CopiaAbierta::abrir(
        copia, [] { return std::optional(clave); }, *destino);
    if (!abierta)
        return mayor;
    abierta->porCadaFichero([&](const motor::CopiaAbierta::Entrada &entrada) {
        const auto datos = motor::leerDatosDeFichero(entrada.archivo);
        if (!datos || !entrada.ruta.startsWith("Media/DCIM/") || datos->tamano <= mayor.largo)
            return true;
        mayor = {copia + u'/' + QString::fromLatin1(motor::nombreEnLaCopia(entrada.id)),
                 abierta->claves().abrir(datos->clave).value_or(motor::Clave()), datos->tamano};
        return true;
    });
    return mayor;
}

bool escribirEn(const QString &fichero, const QByteArray &bytes)
{
    QFile archivo(fichero);
    return archivo.open(QIODevice::WriteOnly) && archivo.write(bytes) == bytes.size();
}

} // namespace

class PruebaComprobacion : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void entera();
    void defectos_data();
    void defectos();
    void loQueElTelefonoNoEnvioSeDice();
    void unFicheroMasCortoSeDice();
    void cifradaEntera();
    void cifradaSinSuClave();
    void cifradaCortada_data();
    void cifradaCortada();
    void cifradaConLaLongitudDeOtroMomento();
    void cortadoOAtrasado_data();
    void cortadoOAtrasado();

private:
    void escribir(const QString &nombre, const QByteArray &bytes)
    {
        QFile fichero(carpeta->filePath(nombre));
        QVERIFY(QDir().mkpath(QFileInfo(fichero).path()));
        QVERIFY(fichero.open(QIODevice::WriteOnly));
        fichero.write(bytes);
    }

    QString cifrada() const { return telefono.ruta(u"cifrada"_s); }

    std::unique_ptr<QTemporaryDir> carpeta;
    std::unique_ptr<BusPrivado> bus;
    std::unique_ptr<LlaveroPrivado> llavero;
    CopiaDePrueba telefono;
};

void PruebaComprobacion::initTestCase()
{
    bus = std::make_unique<BusPrivado>();
    llavero = std::make_unique<LlaveroPrivado>();
    QVERIFY(llavero->listo());
    QVERIFY(telefono.crearTelefono() && telefono.copiar(u"cifrada"_s, clave));
}

void PruebaComprobacion::init()
{
    QVERIFY(Llavero::guardar(clave, u"U"_s));
    carpeta = std::make_unique<QTemporaryDir>();
    escribir(u"Status.plist"_s, plist("<key>SnapshotState</key><string>finished</string>"));
    escribir(u"Manifest.plist"_s, plist("<key>IsEncrypted</key><false/>"));
    sqlite3 *base = nullptr;
    QCOMPARE(sqlite3_open(carpeta->filePath(u"Manifest.db"_s).toUtf8().constData(), &base), SQLITE_OK);
    sqlite3_exec(base, "PRAGMA synchronous = OFF; BEGIN", nullptr, nullptr, nullptr);
    sqlite3_exec(
        base, "CREATE TABLE Files(fileID TEXT PRIMARY KEY, domain TEXT, relativePath TEXT, flags INTEGER, file BLOB)",
        nullptr, nullptr, nullptr);
    for (int i = 0; i < 200; ++i) {
        const auto id = u"%1"_s.arg(i, 40, 16, QLatin1Char('0'));
        const auto blob = registro(5);
        sqlite3_stmt *orden = nullptr;
        sqlite3_prepare_v2(base, "INSERT INTO Files VALUES(?, 'HomeDomain', 'x', ?, ?)", -1, &orden, nullptr);
        const auto texto = id.toUtf8();
        sqlite3_bind_text(orden, 1, texto.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(orden, 2, i == 0 ? 2 : 1); // the first one is a folder, with no file
        sqlite3_bind_blob(orden, 3, blob.constData(), static_cast<int>(blob.size()), SQLITE_TRANSIENT);
        QCOMPARE(sqlite3_step(orden), SQLITE_DONE);
        sqlite3_finalize(orden);
        if (i > 0)
            escribir(id.left(2) + u'/' + id, "12345");
    }
    sqlite3_exec(base, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(base);
}

void PruebaComprobacion::entera()
{
    const auto resultado = comprobar(carpeta->path());
    QVERIFY2(resultado.entera(), qPrintable(resultado.detalles.join(u' ')));
    QVERIFY(resultado.detalles.isEmpty());
}

void PruebaComprobacion::defectos_data()
{
    QTest::addColumn<QString>("fichero");
    QTest::addColumn<int>("largo"); // -1: removed
    QTest::newRow("list empty, as a full disk leaves it") << u"Manifest.db"_s << 0;
    QTest::newRow("list cut") << u"Manifest.db"_s << 9000;
    QTest::newRow("list missing") << u"Manifest.db"_s << -1;
    QTest::newRow("no status") << u"Status.plist"_s << -1;
    QTest::newRow("status cut") << u"Status.plist"_s << 30;
    QTest::newRow("description cut") << u"Manifest.plist"_s << 10;
}

void PruebaComprobacion::defectos()
{
    QFETCH(QString, fichero);
    QFETCH(int, largo);
    QFile archivo(carpeta->filePath(fichero));
    QVERIFY(archivo.exists());
    QVERIFY(largo < 0 ? archivo.remove() : archivo.resize(largo));
    const auto resultado = comprobar(carpeta->path());
    QVERIFY(resultado.rota());
    QCOMPARE(resultado.detalles.size(), 1);
}

void PruebaComprobacion::loQueElTelefonoNoEnvioSeDice()
{
    QVERIFY(QFile::remove(carpeta->filePath(u"00/%1"_s.arg(9, 40, 16, QLatin1Char('0')))));
    const auto perdido = comprobar(carpeta->path());
    QVERIFY(perdido.rota());
    QCOMPARE(perdido.detalles,
             (QStringList{u"Ficheros de la lista que no están en la copia: 1."_s, u"Entre ellos: HomeDomain/x"_s}));
    QVERIFY(comprobar(carpeta->path(), 1).entera()); // the phone itself had refused one
}

void PruebaComprobacion::unFicheroMasCortoSeDice()
{
    QVERIFY(QFile::resize(carpeta->filePath(u"00/%1"_s.arg(7, 40, 16, QLatin1Char('0'))), 4));
    const auto resultado = comprobar(carpeta->path());
    QVERIFY(resultado.entera()); // the phone's own doing
    QCOMPARE(resultado.detalles, QStringList{u"Ficheros más cortos de lo que dice la lista: 1."_s});
    // Nothing of it, which no phone sends in place of five bytes.
    QVERIFY(QFile::resize(carpeta->filePath(u"00/%1"_s.arg(7, 40, 16, QLatin1Char('0'))), 0));
    QVERIFY(comprobar(carpeta->path()).rota());
}

void PruebaComprobacion::cifradaEntera()
{
    const auto resultado = comprobar(cifrada());
    QVERIFY2(resultado.entera() && resultado.cifrada, qPrintable(resultado.detalles.join(u' ')));
    QVERIFY(resultado.detalles.isEmpty());
}

void PruebaComprobacion::cifradaSinSuClave()
{
    QVERIFY(Llavero::borrar(u"U"_s));
    const auto sin = comprobar(cifrada());
    QCOMPARE(sin.veredicto, Veredicto::SinComprobar);
    QCOMPARE(sin.detalles.size(), 1);
    QVERIFY(Llavero::guardar(u"otra"_s, u"U"_s));
    const auto mala = comprobar(cifrada());
    QCOMPARE(mala.veredicto, Veredicto::SinComprobar);
    QVERIFY(mala.detalles != sin.detalles);
    // What can be seen without it still counts.
    QVERIFY(QFile::rename(cifrada() + u"/Status.plist"_s, cifrada() + u"/otro"_s));
    QVERIFY(comprobar(cifrada()).rota());
    QVERIFY(QFile::rename(cifrada() + u"/otro"_s, cifrada() + u"/Status.plist"_s));
}

void PruebaComprobacion::cifradaCortada_data()
{
    QTest::addColumn<int>("desde"); ///< from the end when negative
    QTest::addColumn<int>("quitar");
    QTest::newRow("the end, at a page") << -4096 << 4096;
    QTest::newRow("the end, anywhere") << -1000 << 1000;
    QTest::newRow("a piece from the middle: its end deciphers as it should") << 4096 << 8192;
    QTest::newRow("all of it") << 0 << (1 << 30);
    QTest::newRow("nothing, but the last byte is another") << -1 << 0;
}

void PruebaComprobacion::cifradaCortada()
{
    QFETCH(int, desde);
    QFETCH(int, quitar);
    const auto foto = fotoMasGrande(cifrada());
    QVERIFY(foto.largo > 20000);
    QFile fichero(foto.fichero);
    QVERIFY(fichero.open(QIODevice::ReadOnly));
    const auto bien = fichero.readAll();
    fichero.close();
    auto mal = bien;
    mal.remove(desde < 0 ? mal.size() + desde : desde, quitar);
    if (quitar == 0)
        mal.back() = static_cast<char>(mal.back() ^ 1);
    QVERIFY(escribirEn(foto.fichero, mal));
    const auto resultado = comprobar(cifrada());
    QVERIFY(escribirEn(foto.fichero, bien));
    QVERIFY(resultado.rota() && !resultado.discoLleno);
    QCOMPARE(resultado.detalles.first(), u"Ficheros que no están enteros en la copia: 1."_s);
    QVERIFY(resultado.detalles.last().contains(u"CameraRollDomain/Media/DCIM/"_s));
}

void PruebaComprobacion::cifradaConLaLongitudDeOtroMomento()
{
    const auto foto = fotoMasGrande(cifrada());
    QFile fichero(foto.fichero);
    QVERIFY(fichero.open(QIODevice::ReadOnly));
    const auto bien = fichero.readAll();
    fichero.close();
    for (const auto largo : {foto.largo - 1003, foto.largo + 1003}) {
        QVERIFY(escribirEn(foto.fichero, cifrar(QByteArray(largo, 'x'), foto.suya)));
        const auto resultado = comprobar(cifrada());
        QVERIFY2(resultado.entera(), qPrintable(resultado.detalles.join(u' ')));
        QCOMPARE(resultado.detalles.size(), largo < foto.largo ? 1 : 0);
    }
    QVERIFY(escribirEn(foto.fichero, bien));
}

void PruebaComprobacion::cortadoOAtrasado_data()
{
    QTest::addColumn<QByteArray>("nombre");
    QTest::addColumn<QByteArray>("cabeza");
    QTest::addColumn<qint64>("largo");
    QTest::addColumn<qint64>("declarado");
    QTest::addColumn<bool>("cortado");
    QByteArray base("SQLite format 3\0\x10\0", 18);
    base.resize(112, '\0');
    base[31] = 10; // pages of 4096 bytes
    QByteArray log("\x37\x7f\x06\x82\0\0\0\0\0\0\x10\0", 12);
    log.resize(112, '\0');
    const auto fila = [](const char *que, const QByteArray &nombre, const QByteArray &cabeza, qint64 largo,
                         qint64 declarado, bool cortado) {
        QTest::newRow(que) << nombre << cabeza << largo << declarado << cortado;
    };
    fila("database with all of its pages", "sms.db", base, 40960, 81920, false);
    fila("database without its last page", "sms.db", base, 36864, 40960, true);
    fila("log of whole frames", "sms.db-wal", log, 32 + 3 * 4120, 32 + 9 * 4120, false);
    fila("log cut at a page", "sms.db-wal", log, 8192, 32 + 9 * 4120, true);
    fila("log taken in meanwhile", "sms.db-wal", {}, 0, 500'000, false);
    fila("shared by readers", "sms.db-shm", QByteArray(112, '\0'), 32768, 65536, false);
    fila("photograph that ends at a page", "IMG_1.HEIC", QByteArray(112, 'x'), 1'228'800, 1'830'001, true);
    fila("photograph that lacks whole pages", "IMG_1.HEIC", QByteArray(112, 'x'), 1'230'001, 1'844'401, true);
    fila("list noted when it was longer", "a.plist", QByteArray(112, 'x'), 1000, 5001, false);
}

void PruebaComprobacion::cortadoOAtrasado()
{
    QFETCH(QByteArray, nombre);
    QFETCH(QByteArray, cabeza);
    QFETCH(qint64, largo);
    QFETCH(qint64, declarado);
    QTEST(motor::pareceCortado({nombre, cabeza, largo, declarado}), "cortado");
}

QTEST_GUILESS_MAIN(PruebaComprobacion)
#include "PruebaComprobacion.moc"
