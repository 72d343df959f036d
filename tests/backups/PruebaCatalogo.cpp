#include "backups/Catalogo.h"
#include "backups/Comprobante.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

const auto udid = u"00008120-001A2B3C4D5E6F70"_s;
const QDateTime ahora(QDate(2026, 3, 30), QTime(12, 0)); // the day after the clocks went forward

} // namespace

class PruebaCatalogo : public QObject
{
    Q_OBJECT

private slots:
    void init() { carpeta = std::make_unique<QTemporaryDir>(); }
    void sinCarpeta();
    void elManifiestoVaPrimero();
    void cuentaLaComprobadaYSoloAsi();
    void laNotaEsDeEseEstado_data();
    void laNotaEsDeEseEstado();
    void losDiasDelCalendario_data();
    void losDiasDelCalendario();
    void elUdidDeLaCopia();
    void losAvisos();

private:
    void crear(const QString &ruta, const QDateTime &fecha)
    {
        const auto entera = carpeta->filePath(ruta);
        QVERIFY(QDir().mkpath(QFileInfo(entera).path()));
        QFile fichero(entera);
        QVERIFY(fichero.open(QIODevice::WriteOnly));
        QVERIFY(fichero.setFileTime(fecha, QFileDevice::FileModificationTime));
    }

    void escribir(const QString &ruta, const QByteArray &bytes)
    {
        QFile fichero(carpeta->filePath(ruta));
        QVERIFY(fichero.open(QIODevice::WriteOnly) && fichero.write(bytes) == bytes.size());
    }
    static QByteArray plistDeEstado(const QByteArray &estado, const QByteArray &cual)
    {
        return "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>SnapshotState</key><string>" + estado +
               "</string><key>UUID</key><string>" + cual + "</string></dict></plist>";
    }
    void copiaAcabada(const QString &cual, const QDateTime &fecha)
    {
        for (const auto &nombre : {u"/Manifest.db"_s, u"/Manifest.plist"_s, u"/Info.plist"_s})
            crear(cual + nombre, fecha);
        crear(cual + u"/Status.plist"_s, fecha);
        escribir(cual + u"/Status.plist"_s, plistDeEstado("finished", "A"));
    }

    std::unique_ptr<QTemporaryDir> carpeta;
};

void PruebaCatalogo::sinCarpeta()
{
    QVERIFY(!Catalogo::fechaDeLaUltimaCopia(u"/no/existe"_s, udid));
    QVERIFY(!Catalogo::udidDeLaCopia(u"/no/existe"_s));
    QVERIFY(!Catalogo::diasDesde({}, ahora));
}

void PruebaCatalogo::elManifiestoVaPrimero()
{
    crear(udid + u"/Info.plist"_s, ahora);
    QCOMPARE(Catalogo::fechaDe(carpeta->filePath(udid)), ahora);
    crear(udid + u"/Manifest.db"_s, ahora.addDays(-5));
    QCOMPARE(Catalogo::fechaDe(carpeta->filePath(udid)), ahora.addDays(-5));
    QVERIFY(!Catalogo::fechaDe(carpeta->path()));
}

void PruebaCatalogo::cuentaLaComprobadaYSoloAsi()
{
    const auto copia = carpeta->filePath(udid);
    QCOMPARE(Catalogo::estadoDe(copia).clase, Catalogo::Clase::NoHay);
    crear(udid + u"/Info.plist"_s, ahora); // what the tool writes before it begins
    QCOMPARE(Catalogo::estadoDe(copia).clase, Catalogo::Clase::Inacabada);
    copiaAcabada(udid, ahora.addDays(-9));
    QCOMPARE(Catalogo::estadoDe(copia).clase, Catalogo::Clase::SinComprobar);
    QVERIFY(!Catalogo::fechaDeLaUltimaCopia(carpeta->path(), udid));
    QVERIFY(Comprobante::escribir(copia, ComprobacionDeCopia::Veredicto::SinComprobar));
    QVERIFY(!Catalogo::fechaDeLaUltimaCopia(carpeta->path(), udid));
    QVERIFY(Comprobante::escribir(copia, ComprobacionDeCopia::Veredicto::Entera));
    QCOMPARE(Catalogo::fechaDeLaUltimaCopia(carpeta->path(), udid), ahora.addDays(-9));
    // Another phone's younger one is no backup of this phone.
    const auto otro = u"00008120-00000000000000FF"_s;
    QVERIFY(!Catalogo::fechaDeLaUltimaCopia(carpeta->path(), otro));
    copiaAcabada(otro, ahora.addDays(-2));
    QVERIFY(Comprobante::escribir(carpeta->filePath(otro), ComprobacionDeCopia::Veredicto::Entera));
    QCOMPARE(Catalogo::fechaDeLaUltimaCopia(carpeta->path(), udid), ahora.addDays(-9));
    QCOMPARE(Catalogo::fechaDeLaUltimaCopia(carpeta->path(), {}), ahora.addDays(-2));
}

void PruebaCatalogo::laNotaEsDeEseEstado_data()
{
    QTest::addColumn<QString>("fichero");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("another run") << u"Status.plist"_s << plistDeEstado("finished", "B");
    QTest::newRow("a run that has begun") << u"Status.plist"_s << plistDeEstado("uploading", "A");
    QTest::newRow("another list") << u"Manifest.db"_s << QByteArray("otra lista");
    QTest::newRow("another description") << u"Manifest.plist"_s << QByteArray("otra");
    QTest::newRow("a note that was cut") << Comprobante::fichero() << QByteArray("{\"udid\"");
    QTest::newRow("no note") << Comprobante::fichero() << QByteArray();
}

void PruebaCatalogo::laNotaEsDeEseEstado()
{
    QFETCH(QString, fichero);
    QFETCH(QByteArray, bytes);
    const auto copia = carpeta->filePath(udid);
    copiaAcabada(udid, ahora);
    QVERIFY(Comprobante::escribir(copia, ComprobacionDeCopia::Veredicto::Entera));
    QCOMPARE(Comprobante::leer(copia), ComprobacionDeCopia::Veredicto::Entera);
    // Moved under another phone's name it is not that phone's.
    QVERIFY(QDir().rename(copia, carpeta->filePath(u"00008120-00000000000000FF"_s)));
    QVERIFY(!Comprobante::leer(carpeta->filePath(u"00008120-00000000000000FF"_s)));
    QVERIFY(QDir().rename(carpeta->filePath(u"00008120-00000000000000FF"_s), copia));
    escribir(udid + u'/' + fichero, bytes);
    QVERIFY(!Comprobante::leer(copia));
    QVERIFY(Catalogo::estadoDe(copia).clase != Catalogo::Clase::Entera);
}

void PruebaCatalogo::losDiasDelCalendario_data()
{
    QTest::addColumn<QDateTime>("fecha");
    QTest::addColumn<qint64>("dias");
    QTest::newRow("13 days and 23 hours") << ahora.addDays(-14).addSecs(3600) << 13LL;
    QTest::newRow("14 days") << ahora.addDays(-14) << 14LL;
    QTest::newRow("a day of 23 hours is a day") << QDateTime(QDate(2026, 3, 28), QTime(12, 0)) << 2LL;
    QTest::newRow("an hour ago, yesterday") << QDateTime(QDate(2026, 3, 29), QTime(23, 0)) << 0LL;
    QTest::newRow("a clock that went back") << ahora.addSecs(3600) << 0LL;
}

void PruebaCatalogo::losDiasDelCalendario()
{
    QFETCH(QDateTime, fecha);
    QTEST(Catalogo::diasDesde(fecha, ahora).value(), "dias");
}

void PruebaCatalogo::elUdidDeLaCopia()
{
    for (const auto &nombre : {QString(20, u'a'), u"."_s + QString(29, u'b')})
        crear(nombre + u"/Manifest.db"_s, ahora);
    QVERIFY(!Catalogo::udidDeLaCopia(carpeta->path()));
    crear(QString(21, u'c') + u"/x"_s, ahora);
    QCOMPARE(Catalogo::udidDeLaCopia(carpeta->path()), QString(21, u'c'));
}

void PruebaCatalogo::losAvisos()
{
    QVERIFY(Catalogo::aviso({})->startsWith(u"No tienes ninguna copia de seguridad de este iPhone."_s));
    QVERIFY(!Catalogo::aviso(13));
    QVERIFY(Catalogo::aviso(14));
    QVERIFY(Catalogo::aviso({Catalogo::Clase::Inacabada, ahora}, ahora)->contains(u"a medias"_s));
    QVERIFY(Catalogo::aviso({Catalogo::Clase::SinComprobar, ahora}, ahora)->contains(u"no está comprobada"_s));
    QVERIFY(!Catalogo::aviso({Catalogo::Clase::Entera, ahora}, ahora));
    QCOMPARE(Catalogo::aviso(21), u"La última copia de seguridad es de hace 21 días."_s);
}

QTEST_GUILESS_MAIN(PruebaCatalogo)
#include "PruebaCatalogo.moc"
