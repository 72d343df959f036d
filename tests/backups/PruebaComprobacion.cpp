#include "backups/ComprobacionDeCopia.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

QByteArray plist(const QByteArray &dentro)
{
    return "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" + dentro + "</dict></plist>";
}

QByteArray registro(qint64 tamano)
{
    return plist("<key>$objects</key><array><string>$null</string><dict><key>Size</key><integer>" +
                 QByteArray::number(tamano) + "</integer></dict></array>");
}

} // namespace

class PruebaComprobacion : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void entera();
    void defectos_data();
    void defectos();
    void loQueElTelefonoNoEnvioSeDice();
    void unFicheroMasCortoSeDice();
    void cifrada();

private:
    void escribir(const QString &nombre, const QByteArray &bytes)
    {
        QFile fichero(carpeta->filePath(nombre));
        QVERIFY(QDir().mkpath(QFileInfo(fichero).path()));
        QVERIFY(fichero.open(QIODevice::WriteOnly));
        fichero.write(bytes);
    }

    std::unique_ptr<QTemporaryDir> carpeta;
};

void PruebaComprobacion::init()
{
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
    const auto resultado = comprobarCopia(carpeta->path());
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
    const auto resultado = comprobarCopia(carpeta->path());
    QVERIFY(resultado.rota());
    QCOMPARE(resultado.detalles.size(), 1);
}

void PruebaComprobacion::loQueElTelefonoNoEnvioSeDice()
{
    QVERIFY(QFile::remove(carpeta->filePath(u"00/%1"_s.arg(9, 40, 16, QLatin1Char('0')))));
    const auto resultado = comprobarCopia(carpeta->path());
    QVERIFY(resultado.entera());
    QCOMPARE(resultado.detalles, QStringList{u"Ficheros de la lista que no están en la copia: 1."_s});
}

void PruebaComprobacion::unFicheroMasCortoSeDice()
{
    QVERIFY(QFile::resize(carpeta->filePath(u"00/%1"_s.arg(7, 40, 16, QLatin1Char('0'))), 4));
    const auto resultado = comprobarCopia(carpeta->path());
    QVERIFY(resultado.entera()); // with room on the disk it is the phone's own doing
    QCOMPARE(resultado.detalles, QStringList{u"Ficheros más cortos de lo que dice la lista: 1."_s});
}

void PruebaComprobacion::cifrada()
{
    escribir(u"Manifest.plist"_s, plist("<key>IsEncrypted</key><true/>"));
    escribir(u"Manifest.db"_s, QByteArray(4096, 'x'));
    QCOMPARE(comprobarCopia(carpeta->path()).veredicto, ComprobacionDeCopia::Veredicto::SinComprobar);
    escribir(u"Manifest.db"_s, QByteArray(4095, 'x'));
    QVERIFY(comprobarCopia(carpeta->path()).rota());
    escribir(u"Manifest.db"_s, {});
    QVERIFY(comprobarCopia(carpeta->path()).rota());
}

QTEST_GUILESS_MAIN(PruebaComprobacion)
#include "PruebaComprobacion.moc"
