#include "support/TelefonoSimulado.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// A phone that goes silent ends the command in order, not after the library's patience at each of its questions.
class PruebaTelefonoCallado : public QObject
{
    Q_OBJECT

private slots:
    void calla_data();
    void calla();
};

void PruebaTelefonoCallado::calla_data()
{
    QTest::addColumn<QString>("servicio");
    QTest::addColumn<QString>("orden");
    QTest::newRow("before it lets in") << u"lockdown"_s << u"bateria"_s;
    QTest::newRow("a list") << u"com.apple.mobile.diagnostics_relay"_s << u"bateria"_s;
    QTest::newRow("files") << u"com.apple.afc"_s << u"copiar"_s;
}

void PruebaTelefonoCallado::calla()
{
    QFETCH(QString, servicio);
    QFETCH(QString, orden);
    TelefonoSimulado simulado;
    QVERIFY2(simulado.listo(), qPrintable(simulado.motivo()));
    const auto pausa =
        simulado.orden({{u"orden"_s, u"pausa"_s}, {u"servicio"_s, servicio}, {u"ms"_s, 120'000}, {u"veces"_s, 0}});
    QVERIFY(pausa[u"bien"_s].toBool());
    const QTemporaryDir carpeta;
    QElapsedTimer reloj;
    reloj.start();
    const auto fin = ejecutar(QStringLiteral(MOTOR), {orden, simulado.udid(), carpeta.filePath(u"fotos"_s)}, 100);
    QVERIFY2(reloj.elapsed() < 15'000, qPrintable(QString::number(reloj.elapsed())));
    QCOMPARE(fin.codigo, 1);
    QVERIFY2(fin.salida.contains("\"tipo\":\"error\""), fin.salida.constData());
}

QTEST_GUILESS_MAIN(PruebaTelefonoCallado)
#include "PruebaTelefonoCallado.moc"
