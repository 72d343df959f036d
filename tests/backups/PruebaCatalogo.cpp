#include "backups/Catalogo.h"

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
    void unaCopiaDeOtroTelefonoTambienCuenta();
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
    QCOMPARE(Catalogo::fechaDeLaUltimaCopia(carpeta->path(), udid), ahora.addDays(-5));
    QVERIFY(!Catalogo::fechaDe(carpeta->path()));
}

void PruebaCatalogo::unaCopiaDeOtroTelefonoTambienCuenta()
{
    crear(u"corta/Info.plist"_s, ahora.addDays(-3));
    crear(u".oculta/Manifest.db"_s, ahora.addDays(-2));
    QCOMPARE(Catalogo::fechaDeLaUltimaCopia(carpeta->path(), udid), ahora.addDays(-2));
    crear(udid + u"/Manifest.db"_s, ahora.addDays(-9));
    QCOMPARE(Catalogo::fechaDeLaUltimaCopia(carpeta->path(), udid), ahora.addDays(-9));
    QCOMPARE(Catalogo::fechaDeLaUltimaCopia(carpeta->path(), {}), ahora.addDays(-2));
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
    QCOMPARE(Catalogo::aviso(21), u"La última copia de seguridad es de hace 21 días."_s);
}

QTEST_GUILESS_MAIN(PruebaCatalogo)
#include "PruebaCatalogo.moc"
