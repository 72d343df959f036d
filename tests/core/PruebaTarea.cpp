#include "core/Diario.h"
#include "core/Tarea.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

class PruebaTarea : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QFile::remove(carpeta.filePath(u"d.json"_s));
        diario = std::make_unique<Diario>(carpeta.filePath(u"d.json"_s));
        tarea = std::make_unique<Tarea>(*diario);
    }
    void laVidaDeUnTrabajo();
    void elCierreRepetidoNoTocaElDiario();
    void cancelar();
    void unTrabajoEncimaDeOtroTomaElMarco();
    void elRegistroGuardaLosUltimosCuatrocientos();
    void porcentaje();
    void enPalabras_data();
    void enPalabras();
    void tiempoRestante_data();
    void tiempoRestante();
    void rechazarNoEntraEnElDiario();
    void vigilarUnaCarpeta();

private:
    QTemporaryDir carpeta;
    std::unique_ptr<Diario> diario;
    std::unique_ptr<Tarea> tarea;
};

void PruebaTarea::laVidaDeUnTrabajo()
{
    QSignalSpy acabada(tarea.get(), &Tarea::acabada);
    tarea->empezar(u"Copia"_s, u"Preparando..."_s);
    QVERIFY(tarea->enMarcha() && !tarea->terminada());
    QCOMPARE(diario->lista().first().titulo, u"Copia"_s);
    tarea->ponDetalle(u"45% de la copia"_s);
    QCOMPARE(diario->lista().first().detalle, u"45% de la copia"_s);
    tarea->ponCarpetaResultado(u"/tmp/x"_s);
    tarea->ponDetalle(QString());
    tarea->cerrar(true);
    QCOMPARE(diario->lista().first().detalle, u"Terminado"_s);
    QCOMPARE(diario->lista().first().carpeta, u"/tmp/x"_s);
    QCOMPARE(tarea->terminadaBien(), true);
    QCOMPARE(acabada.size(), 1);

    tarea->cerrarAviso();
    QVERIFY(tarea->oculta() && !tarea->terminada() && tarea->registro().isEmpty() && !tarea->idActividad());
    tarea->empezar(QString(), u"Conectando con el iPhone…"_s);
    QVERIFY(!tarea->oculta()); // another job is another notice
    QCOMPARE(diario->lista().first().titulo, u"Trabajando"_s);
    QVERIFY(!tarea->carpetaResultado()); // the folder of the job before is not this one's
    tarea->ponDetalle(QString());
    tarea->cerrar(false);
    QCOMPARE(diario->lista().first().detalle, u"No se completó"_s);
}

void PruebaTarea::elCierreRepetidoNoTocaElDiario()
{
    QSignalSpy acabada(tarea.get(), &Tarea::acabada);
    tarea->empezar(u"Copia"_s, u"Paso"_s);
    tarea->cerrar(true);
    const auto antes = diario->lista();
    tarea->ponDetalle(u"otra cosa"_s);
    tarea->cerrar(false);
    QCOMPARE(diario->lista(), antes);
    QCOMPARE(acabada.size(), 1);
}

void PruebaTarea::cancelar()
{
    tarea->cancelar();
    QCOMPARE(tarea->registro(), QStringList{u"Cancelado por ti."_s});
    QCOMPARE(tarea->terminadaBien(), false);
    QCOMPARE(diario->cuantas(), 0);

    tarea->empezar(u"Copia"_s, u"Paso"_s);
    const auto numero = tarea->trabajo();
    QVERIFY(tarea->sigue(numero));
    int finales = 0;
    tarea->ejecutor.lanzar(
        u"/bin/sleep"_s, {u"60"_s}, [](const QString &) {}, [&](int) { ++finales; });
    tarea->cancelar();
    QVERIFY(tarea->cancelada() && !tarea->enMarcha() && !tarea->sigue(numero));
    QCOMPARE(diario->lista().first().estado, Actividad::Estado::Mal);
    QTRY_COMPARE(finales, 1);
    tarea->empezar(u"Otra"_s, u"Paso"_s);
    QVERIFY(!tarea->sigue(numero) && !tarea->cancelada());
}

void PruebaTarea::unTrabajoEncimaDeOtroTomaElMarco()
{
    tarea->empezar(u"Uno"_s, u"a"_s);
    tarea->empezar(u"Dos"_s, u"b"_s);
    QCOMPARE(diario->cuantas(), 1);
    tarea->cerrar(true);
    QCOMPARE(diario->lista().first().estado, Actividad::Estado::Bien);
}

void PruebaTarea::elRegistroGuardaLosUltimosCuatrocientos()
{
    for (int i = 1; i <= 401; ++i)
        tarea->apunta(QString::number(i));
    QCOMPARE(tarea->registro().size(), 400);
    QCOMPARE(tarea->registro().first(), u"2"_s);
    QCOMPARE(tarea->registro().last(), u"401"_s);
}

void PruebaTarea::porcentaje()
{
    QVERIFY(!tarea->porcentaje());
    tarea->ponAvance(999, 100);
    QCOMPARE(tarea->porcentaje(), 100);
    tarea->ponAvance(2, 3);
    QCOMPARE(tarea->porcentaje(), 66);
}

void PruebaTarea::enPalabras_data()
{
    QTest::addColumn<double>("segundos");
    QTest::addColumn<QString>("palabras");
    QTest::newRow("44 s") << 44.0 << u"menos de un minuto"_s;
    QTest::newRow("45 s") << 45.0 << u"unos 1 minuto"_s;
    QTest::newRow("90 s rounds away from zero") << 90.0 << u"unos 2 minutos"_s;
    QTest::newRow("59 min") << 3540.0 << u"unos 59 minutos"_s;
    QTest::newRow("59 min 31 s is an hour") << 3571.0 << u"unas 1 hora"_s;
    QTest::newRow("2 h") << 7200.0 << u"unas 2 horas"_s;
    QTest::newRow("1 h 1 min") << 3660.0 << u"1 h 1 min"_s;
}

void PruebaTarea::enPalabras()
{
    QFETCH(double, segundos);
    QTEST(Tarea::enPalabras(segundos), "palabras");
}

void PruebaTarea::tiempoRestante_data()
{
    QTest::addColumn<int>("pasados");
    QTest::addColumn<int>("hechos");
    QTest::addColumn<QString>("quedan");
    QTest::newRow("too early") << 7 << 90 << QString();
    QTest::newRow("too little done") << 600 << 2 << QString();
    QTest::newRow("a straight line") << 600 << 25 << u"unos 30 minutos"_s;
    QTest::newRow("nearly there") << 600 << 99 << u"menos de un minuto"_s;
}

void PruebaTarea::tiempoRestante()
{
    QFETCH(int, pasados);
    QFETCH(int, hechos);
    tarea->empezar(u"Copia"_s, u"Paso"_s);
    tarea->ponInicio(QDateTime::currentDateTimeUtc().addSecs(-pasados));
    tarea->ponAvance(hechos, 100);
    QTEST(tarea->quedan(), "quedan");
    tarea->cerrar(true);
    QVERIFY(!tarea->tiempoRestante());
}

void PruebaTarea::rechazarNoEntraEnElDiario()
{
    tarea->cerrarAviso();
    tarea->rechazar(u"Copia de seguridad"_s, u"Ya hay una copia en marcha"_s, {u"a"_s, u"b"_s});
    QVERIFY(!tarea->enMarcha() && !tarea->oculta());
    QCOMPARE(tarea->terminadaBien(), false);
    QCOMPARE(tarea->registro().size(), 2);
    QCOMPARE(diario->cuantas(), 0);
}

void PruebaTarea::vigilarUnaCarpeta()
{
    const QDir dir(carpeta.path());
    QVERIFY(dir.mkpath(u"fotos/100APPLE/.oculta"_s));
    for (const auto *nombre : {"a.jpg", "100APPLE/b.jpg", ".oculto.jpg", "100APPLE/.oculta/c.jpg"}) {
        QFile fichero(dir.filePath(u"fotos/"_s + QLatin1String(nombre)));
        QVERIFY(fichero.open(QIODevice::WriteOnly));
    }
    QVERIFY(QFile::link(dir.filePath(u"fotos/a.jpg"_s), dir.filePath(u"fotos/enlace.jpg"_s)));
    QCOMPARE(contarFicheros(dir.filePath(u"fotos"_s)), 2);
    QCOMPARE(contarFicheros(u"/no/existe"_s), 0);
    tarea->empezar(u"Fotos"_s, u"Paso"_s);
    tarea->ponAvance(0, 10);
    tarea->vigilarCarpeta(dir.filePath(u"fotos"_s));
    QTRY_COMPARE(tarea->hechos(), 2);
    QCOMPARE(tarea->deTotal(), 10);
    tarea->cerrar(true);
}

QTEST_GUILESS_MAIN(PruebaTarea)
#include "PruebaTarea.moc"
