#include "backups/ExplicarFallo.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

class PruebaExplicar : public QObject
{
    Q_OBJECT

private slots:
    void porcentajes_data();
    void porcentajes();
    void sentencias_data();
    void sentencias();
    void causas_data();
    void causas();
};

void PruebaExplicar::porcentajes_data()
{
    QTest::addColumn<QString>("linea");
    QTest::addColumn<int>("global");
    QTest::addColumn<int>("suelto");
    QTest::newRow("overall bar") << u"[=====      ]  45% Finished"_s << 45 << 45;
    QTest::newRow("bar of a batch") << u"[==        ]  19% (115.2 KB/615.2 KB)"_s << -1 << 19;
    QTest::newRow("no left anchor") << u"1000% Finished"_s << 0 << 0;
    QTest::newRow("no upper bound") << u"999% Finished"_s << 999 << 999;
    QTest::newRow("none") << u"Finished"_s << -1 << -1;
}

void PruebaExplicar::porcentajes()
{
    QFETCH(QString, linea);
    QTEST(static_cast<int>(porcentajeGlobal(linea).value_or(-1)), "global");
    QTEST(static_cast<int>(porcentajeEn(linea).value_or(-1)), "suelto");
}

void PruebaExplicar::sentencias_data()
{
    QTest::addColumn<QStringList>("lineas");
    QTest::addColumn<QString>("principio");
    QTest::newRow("empty") << QStringList() << u"La copia no se pudo completar."_s;
    QTest::newRow("only what is said at the start")
        << QStringList{u"El iPhone tiene que estar desbloqueado para empezar."_s}
        << u"La copia no se pudo completar."_s;
    QTest::newRow("exchange wins over passcode")
        << QStringList{u"enter the Passcode"_s, u"Could not perform backup protocol version exchange, error code -1"_s}
        << u"El iPhone no ha podido empezar la copia. Casi siempre es porque YA HAY OTRA COPIA en marcha (el iPhone "
           u"solo "
           "atiende una a la vez), o porque se ha bloqueado. Espera a que termine la otra, o desbloquéalo y vuelve a "
           "intentarlo."_s;
    QTest::newRow("locked") << QStringList{u"ERROR: Device is locked"_s} << u"El iPhone estaba bloqueado."_s;
    QTest::newRow("gone") << QStringList{u"No device found with udid X."_s} << u"He perdido el iPhone."_s;
    QTest::newRow("across two lines") << QStringList{u"write: no"_s, u"space left"_s}
                                      << u"No cabe en el disco del Mac."_s;
    QTest::newRow("password") << QStringList{u"a backup PASSWORD is required"_s} << u"Problema con la contraseña"_s;
}

void PruebaExplicar::sentencias()
{
    QFETCH(QStringList, lineas);
    QFETCH(QString, principio);
    QVERIFY2(explicar(lineas).startsWith(principio), qPrintable(explicar(lineas)));
}

void PruebaExplicar::causas_data()
{
    QTest::addColumn<QString>("linea");
    QTest::addColumn<QString>("principio");
    QTest::newRow("208") << u"ErrorCode 208: Device locked (MBErrorDomain/208)"_s << u"El iPhone estaba bloqueado."_s;
    QTest::newRow("105") << u"ErrorCode 105: Insufficient free disk space (MBErrorDomain/105)"_s
                         << u"No cabe en el disco"_s;
    QTest::newRow("-17") << u"ERROR: Could not connect to lockdownd, error code -17"_s
                         << u"El iPhone estaba bloqueado."_s;
    QTest::newRow("-18") << u"ERROR: Could not connect to lockdownd, error code -18"_s
                         << u"El iPhone no me deja entrar."_s;
    QTest::newRow("no code") << u"Backup will be encrypted."_s << QString();
}

void PruebaExplicar::causas()
{
    QFETCH(QString, linea);
    QFETCH(QString, principio);
    const auto causa = causaCierta({u"Starting backup..."_s, linea});
    QCOMPARE(causa.has_value(), !principio.isEmpty());
    QVERIFY(causa.value_or(QString()).startsWith(principio));
}

QTEST_GUILESS_MAIN(PruebaExplicar)
#include "PruebaExplicar.moc"
