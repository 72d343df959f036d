#include "backups/Copias.h"
#include "core/FicheroDelDiario.h"
#include "session/Modelo.h"
#include "support/TelefonoSimulado.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// A backup that is under way: progress while it happens, and every way of not reaching its end.
class PruebaCopiaCortada : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void elAvanceLlegaMientrasSucede();
    void sinCable_data();
    void sinCable();
    void sinCableUnMomento();
    void bloqueadoAntesDeEmpezar();
    void cancelar();
    void elProgramaMuereYVuelveAEmpezar();

private:
    void frenar(int bytesPorSegundo)
    {
        const QJsonObject orden{{u"orden"_s, u"frenar"_s}, {u"bytes_por_segundo"_s, bytesPorSegundo}};
        QVERIFY(telefono->orden(orden).value(u"bien"_s).toBool());
    }
    /// What stands under final names in the backup: never half a file.
    void nadaAMedias();

    std::unique_ptr<TelefonoSimulado> telefono;
    std::unique_ptr<Modelo> modelo;
    std::unique_ptr<Copias> copias;
};

void PruebaCopiaCortada::init()
{
    QDir(QDir::homePath() + u"/Vellora"_s).removeRecursively();
    telefono = std::make_unique<TelefonoSimulado>();
    QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
    modelo = std::make_unique<Modelo>();
    copias = std::make_unique<Copias>(*modelo, [](const QString &) { return Llavero::Estado::Hallada; });
    QTRY_VERIFY_WITH_TIMEOUT(modelo->seleccionado(), 20000);
}

void PruebaCopiaCortada::cleanup()
{
    QTRY_VERIFY_WITH_TIMEOUT(procesosCon(u"idevicebackup2"_s).isEmpty(), 15000);
    copias.reset();
    modelo.reset();
    telefono.reset();
}

void PruebaCopiaCortada::nadaAMedias()
{
    const auto carpeta = modelo->carpetaCopias() + u'/' + telefono->udid();
    const QDir dir(carpeta);
    QVERIFY(!dir.exists(u"Manifest.db"_s));
    const auto subcarpetas = dir.entryList({u"??"_s}, QDir::Dirs | QDir::NoDotAndDotDot);
    for (const auto &una : subcarpetas)
        QVERIFY2(QDir(dir.filePath(una)).isEmpty(), qPrintable(una));
}

void PruebaCopiaCortada::elAvanceLlegaMientrasSucede()
{
    frenar(1'500'000);
    auto &tarea = modelo->tarea();
    QList<qint64> porcentajes;
    connect(&tarea, &Tarea::cambio, this, [&] {
        if (tarea.enMarcha() && tarea.deTotal() == 100 &&
            (porcentajes.isEmpty() || porcentajes.last() != tarea.hechos()))
            porcentajes << tarea.hechos();
    });
    copias->hacerCopia(true);
    QVERIFY(tarea.enMarcha() && !tarea.oculta());
    QTRY_VERIFY_WITH_TIMEOUT(tarea.registro().contains(u"Full backup mode."_s), 20000);
    QVERIFY(tarea.enMarcha()); // said at the start, heard at the start
    copias->hacerCopia(true);
    QVERIFY(tarea.registro().contains(u"Ya hay algo en marcha. Espera a que termine."_s));
    QTRY_VERIFY_WITH_TIMEOUT(!tarea.enMarcha(), 60000);
    QCOMPARE(tarea.terminadaBien(), true);
    QCOMPARE(tarea.hechos(), 100);
    QVERIFY2(porcentajes.size() >= 5, "too few steps for a bar that moves");
    QVERIFY(std::is_sorted(porcentajes.cbegin(), porcentajes.cend()));
    QCOMPARE(modelo->diario().lista().first().detalle, u"Copia completa guardada"_s);
    QCOMPARE(copias->ultimaCopia(), u"hoy"_s);
}

void PruebaCopiaCortada::sinCable_data()
{
    QTest::addColumn<QJsonObject>("orden");
    const auto servicio = u"com.apple.mobilebackup2"_s;
    QTest::newRow("in the middle of a file")
        << QJsonObject{{u"orden"_s, u"cortar"_s}, {u"servicio"_s, servicio}, {u"bytes"_s, 900000}};
    QTest::newRow("between two files, where the tool never notices")
        << QJsonObject{{u"orden"_s, u"cortar"_s}, {u"servicio"_s, servicio}, {u"entre_ficheros"_s, 5}};
}

void PruebaCopiaCortada::sinCable()
{
    QFETCH(QJsonObject, orden);
    QVERIFY(telefono->orden(orden).value(u"bien"_s).toBool());
    auto &tarea = modelo->tarea();
    QSignalSpy acabada(&tarea, &Tarea::acabada);
    copias->hacerCopia(true);
    QTRY_VERIFY_WITH_TIMEOUT(!tarea.enMarcha(), 40000);
    QCOMPARE(tarea.terminadaBien(), false);
    QCOMPARE(tarea.detalle(), u"No se pudo completar"_s);
    QCOMPARE(tarea.registro().last(), u"He perdido el iPhone. Comprueba el cable."_s);
    QCOMPARE(acabada.size(), 1);
    QCOMPARE(modelo->diario().lista().first().estado, Actividad::Estado::Mal);
    nadaAMedias();

    // The cable back in, the next one goes well in the same folder.
    QTRY_VERIFY_WITH_TIMEOUT(procesosCon(u"idevicebackup2"_s).isEmpty(), 15000);
    QVERIFY(telefono->orden(u"conectar"_s));
    modelo->refrescar();
    QTRY_VERIFY_WITH_TIMEOUT(modelo->seleccionado() && !modelo->buscando(), 20000);
    copias->hacerCopia(true);
    QTRY_VERIFY_WITH_TIMEOUT(!tarea.enMarcha(), 60000);
    QCOMPARE(tarea.terminadaBien(), true);
}

void PruebaCopiaCortada::sinCableUnMomento()
{
    const QJsonObject corte{
        {u"orden"_s, u"cortar"_s}, {u"servicio"_s, u"com.apple.mobilebackup2"_s}, {u"entre_ficheros"_s, 5}};
    QVERIFY(telefono->orden(corte).value(u"bien"_s).toBool());
    auto &tarea = modelo->tarea();
    copias->hacerCopia(true);
    // Back so soon that nobody looked: only the tool, which waits for ever, can give it away.
    QTRY_VERIFY_WITH_TIMEOUT(telefono->orden(QJsonObject{{u"orden"_s, u"contar"_s}})[u"cuentas"_s][u"conectado"_s] ==
                                 QJsonValue(false),
                             20000);
    QVERIFY(telefono->orden(u"conectar"_s));
    QTRY_VERIFY_WITH_TIMEOUT(!tarea.enMarcha(), 60000);
    QCOMPARE(tarea.registro().last(), u"He perdido el iPhone. Comprueba el cable."_s);
    nadaAMedias();
}

void PruebaCopiaCortada::bloqueadoAntesDeEmpezar()
{
    QVERIFY(telefono->orden(u"bloquear"_s)); // after it was read, before it is asked for
    copias->hacerCopia(true);
    auto &tarea = modelo->tarea();
    QTRY_VERIFY_WITH_TIMEOUT(!tarea.enMarcha(), 40000);
    QCOMPARE(tarea.registro().last(), u"El iPhone estaba bloqueado. Desbloquéalo con tu código y dale otra vez."_s);
    tarea.cerrarAviso();
    QVERIFY(telefono->orden(u"desbloquear"_s));
    QVERIFY(telefono->orden(u"denegar"_s));
    copias->hacerCopia(true);
    QVERIFY(!tarea.oculta());
    QTRY_VERIFY_WITH_TIMEOUT(!tarea.enMarcha(), 40000);
    QCOMPARE(tarea.registro().last(),
             u"El iPhone no me deja entrar. Desbloquéalo y, si te lo pregunta, toca «Confiar»."_s);
}

void PruebaCopiaCortada::cancelar()
{
    frenar(300'000);
    auto &tarea = modelo->tarea();
    QSignalSpy acabada(&tarea, &Tarea::acabada);
    copias->hacerCopia(true);
    QTRY_VERIFY_WITH_TIMEOUT(tarea.hechos() > 2, 30000);
    tarea.cancelar();
    QVERIFY(!tarea.enMarcha());
    QCOMPARE(tarea.registro().last(), u"Cancelado por ti."_s);
    const auto detalle = tarea.detalle();
    QTRY_VERIFY_WITH_TIMEOUT(procesosCon(u"idevicebackup2"_s).isEmpty(), 15000);
    QTest::qWait(300);
    QCOMPARE(acabada.size(), 1); // what the tool says while it dies opens no second ending
    QCOMPARE(tarea.registro().last(), u"Cancelado por ti."_s);
    QCOMPARE(tarea.detalle(), detalle);
    QCOMPARE(modelo->diario().lista().first().estado, Actividad::Estado::Mal);
    nadaAMedias();
}

void PruebaCopiaCortada::elProgramaMuereYVuelveAEmpezar()
{
    frenar(300'000);
    QProcess programa;
    programa.start(QStringLiteral(VELLORA), {u"copia"_s, u"--sin-cifrar"_s});
    QTRY_VERIFY_WITH_TIMEOUT(
        programa.readAllStandardError().contains("Full backup mode.") || !procesosCon(u"--full"_s).isEmpty(), 20000);
    QTest::qWait(1500);
    programa.kill();
    QVERIFY(programa.waitForFinished());
    QTRY_VERIFY_WITH_TIMEOUT(procesosCon(u"idevicebackup2"_s).isEmpty(), 5000);
    QCOMPARE(leerDiario(Diario::ficheroPorDefecto()).first().estado, Actividad::Estado::EnMarcha);

    nadaAMedias();

    const Diario nuevo; // as the next start reads it
    QCOMPARE(nuevo.lista().first().estado, Actividad::Estado::Cancelada);
    QCOMPARE(nuevo.lista().first().detalle, u"Se cerró la app"_s);
    frenar(0);
    const auto otra = ejecutar(QStringLiteral(VELLORA), {u"copia"_s, u"--sin-cifrar"_s});
    QCOMPARE(otra.codigo, 0);
    QVERIFY(QFile::exists(QString::fromUtf8(otra.salida.trimmed()) + u"/Manifest.db"_s));
}

QTEST_GUILESS_MAIN(PruebaCopiaCortada)
#include "PruebaCopiaCortada.moc"
