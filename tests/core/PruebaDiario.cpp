#include "core/Diario.h"
#include "core/FicheroDelDiario.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

constexpr auto entradaBien =
    R"({"id":"6F9619FF-8B86-D011-B42D-00CF4FC964FF","titulo":"Copia","detalle":"Lista","estado":"bien","empezo":785000000.25,"termino":785000600.25,"carpeta":"/tmp/a"})";
constexpr auto entradaAbierta =
    R"({"id":"7F9619FF-8B86-D011-B42D-00CF4FC964FF","titulo":"Fotos","detalle":"3 de 10","estado":"enMarcha","empezo":785000000})";

void escribir(const QString &fichero, const QByteArray &bytes)
{
    QFile archivo(fichero);
    QVERIFY(archivo.open(QIODevice::WriteOnly));
    archivo.write(bytes);
}

QByteArray leer(const QString &fichero)
{
    QFile archivo(fichero);
    return archivo.open(QIODevice::ReadOnly) ? archivo.readAll() : QByteArray();
}

} // namespace

class PruebaDiario : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        fichero = carpeta.filePath(u"%1/actividad.json"_s.arg(QString::fromLatin1(QTest::currentTestFunction())));
    }
    void laFormaDelFichero();
    void loQueQuedoAbierto();
    void entradasRotas_data();
    void entradasRotas();
    void ficherosRotos_data();
    void ficherosRotos();
    void variosProgramas();
    void todosALaVez();
    void masDeCientoVeinte();
    void unTrabajoNuevoCierraLosDemasMenosElMasViejo();
    void vistasHastaReiniciar();
    void laDuracionVaSinUnos();
    void unDiscoQueNoDejaEscribir();

private:
    QTemporaryDir carpeta;
    QString fichero;
};

void PruebaDiario::laFormaDelFichero()
{
    Diario diario(fichero);
    const QAbstractItemModelTester vigia(&diario);
    const auto id = diario.empezar(u"Copia «número\n1» \"ñ\""_s);
    const auto objeto = QJsonDocument::fromJson(leer(fichero)).array().first().toObject();
    QCOMPARE(objeto.value(u"id"_s).toString(), id.toString(QUuid::WithoutBraces).toUpper());
    QCOMPARE(objeto.value(u"detalle"_s).toString(), u"Empezando…"_s);
    QVERIFY(!objeto.contains(u"termino"_s) && !objeto.contains(u"carpeta"_s));
    const auto ahora = static_cast<double>(QDateTime::currentSecsSinceEpoch() - 978307200);
    QVERIFY(qAbs(objeto.value(u"empezo"_s).toDouble() - ahora) < 60);

    diario.actualizar(id, u"50 % de la copia"_s);
    QVERIFY(!leer(fichero).contains("50 %"));
    diario.terminar(id, true, u"Lista"_s, u"/tmp/a"_s);
    const auto texto = leer(fichero);
    int antes = -1;
    for (const auto *clave : {"[{\"id\":", "\"titulo\":", "\"detalle\":", "\"estado\":\"bien\"",
                              "\"empezo\":", "\"termino\":", "\"carpeta\":\"/tmp/a\"}]"}) {
        const auto donde = static_cast<int>(texto.indexOf(clave));
        QVERIFY2(donde > antes, clave);
        antes = donde;
    }
    QCOMPARE(leerDiario(fichero), diario.lista());
}

void PruebaDiario::loQueQuedoAbierto()
{
    QVERIFY(QDir().mkpath(QFileInfo(fichero).path()));
    const auto bytes = QByteArray("[") + entradaAbierta + ',' + entradaBien + ']';
    escribir(fichero, bytes);
    const Diario diario(fichero);
    QCOMPARE(diario.cuantas(), 2);
    QCOMPARE(diario.lista().first().estado, Actividad::Estado::Cancelada);
    QCOMPARE(diario.lista().first().detalle, u"Se cerró la app"_s);
    QVERIFY(!diario.lista().first().termino);
    QCOMPARE(diario.lista().last().estado, Actividad::Estado::Bien);
    QCOMPARE(diario.lista().last().empezo.toMSecsSinceEpoch(), 1763307200250);
    QCOMPARE(leer(fichero), bytes); // reading does not write
}

void PruebaDiario::entradasRotas_data()
{
    QTest::addColumn<QByteArray>("rota");
    const QByteArray bien = entradaBien;
    QTest::newRow("a state that does not exist") << QByteArray(bien).replace("\"bien\"", "\"regular\"");
    QTest::newRow("a date as text") << QByteArray(bien).replace("785000000.25", "\"ayer\"");
    QTest::newRow("no title") << QByteArray(bien).replace("titulo", "tItulo");
    QTest::newRow("no UUID") << QByteArray(bien).replace("6F9619FF", "zzz");
    QTest::newRow("a number") << QByteArray("3");
    QTest::newRow("the same again") << QByteArray(bien).replace("6F9619FF", "8F9619FF");
}

/// One bad entry costs that entry.
void PruebaDiario::entradasRotas()
{
    QFETCH(QByteArray, rota);
    QVERIFY(QDir().mkpath(QFileInfo(fichero).path()));
    const auto buena = QByteArray(entradaBien).replace("6F9619FF", "8F9619FF");
    const auto bytes = "[" + buena + "," + rota + "," + QByteArray(entradaBien).replace("6F9619FF", "9F9619FF") + "]";
    escribir(fichero, bytes);
    Diario diario(fichero);
    QCOMPARE(diario.cuantas(), 2);
    QCOMPARE(leer(fichero), bytes);
    diario.empezar(u"Uno"_s);
    QCOMPARE(Diario(fichero).cuantas(), 3);
}

void PruebaDiario::ficherosRotos_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut short") << QByteArray("[{\"id\":");
    QTest::newRow("an object and no list") << QByteArray(entradaBien);
    QTest::newRow("no JSON at all") << QByteArray(100'000, '\xfe');
    QTest::newRow("nested without an end") << QByteArray(1'000'000, '[');
    QTest::newRow("far too long") << '[' + QByteArray(20'000'000, ' ') + ']';
    QTest::newRow("a pipe") << QByteArray("pipe");
}

/// What is no journal is set aside as it is, and told.
void PruebaDiario::ficherosRotos()
{
    QFETCH(QByteArray, bytes);
    QDir().mkpath(QFileInfo(fichero).path());
    QDir donde(QFileInfo(fichero).path());
    for (const auto &viejo : donde.entryList(QDir::Files | QDir::System | QDir::Hidden))
        donde.remove(viejo);
    if (bytes == "pipe")
        QCOMPARE(mkfifo(fichero.toUtf8().constData(), 0600), 0);
    else
        escribir(fichero, bytes);
    Diario diario(fichero);
    QCOMPARE(diario.cuantas(), 1);
    QCOMPARE(diario.fallidas(), 1);
    QVERIFY(diario.lista().first().detalle.contains(u"Lo aparto sin borrarlo"_s));
    if (bytes != "pipe")
        QCOMPARE(leer(fichero), bytes); // reading changes nothing
    diario.empezar(u"Uno"_s);
    const auto apartados = donde.entryList({u"actividad.json.apartado *"_s}, QDir::Files | QDir::System);
    QCOMPARE(apartados.size(), 1);
    if (bytes != "pipe")
        QCOMPARE(leer(donde.filePath(apartados.first())), bytes);
    const Diario otro(fichero);
    QCOMPARE(otro.cuantas(), 2);
    QCOMPARE(otro.lista().last().titulo, u"Historial de actividad"_s);
}

/// The window, a command and the weekly backup write side by side.
void PruebaDiario::variosProgramas()
{
    Diario ventana(fichero);
    const QAbstractItemModelTester vigia(&ventana);
    const auto fotos = ventana.empezar(u"Fotos"_s);
    auto semanal = std::make_unique<Diario>(fichero);
    QCOMPARE(semanal->lista().first().estado, Actividad::Estado::EnMarcha); // of another program, and alive
    const auto copia = semanal->empezar(u"Copia semanal"_s);
    ventana.terminar(fotos, true, u"12 fotos"_s, {});
    QCOMPARE(ventana.cuantas(), 2);
    semanal->terminar(copia, false, u"El iPhone se desconectó"_s, {});
    QTRY_COMPARE(ventana.lista().first().detalle, u"El iPhone se desconectó"_s); // without being asked to look
    const auto otra = semanal->empezar(u"Otra"_s);
    QCOMPARE(Diario(fichero).lista().first().estado, Actividad::Estado::EnMarcha);
    semanal.reset(); // ended in the middle of it
    const Diario despues(fichero);
    QCOMPARE(despues.cuantas(), 3);
    QCOMPARE(despues.lista().first().id, otra);
    QCOMPARE(despues.lista().first().estado, Actividad::Estado::Cancelada);
    QCOMPARE(despues.lista().last().detalle, u"12 fotos"_s);
    ventana.borrarTodo();
    QCOMPARE(Diario(fichero).cuantas(), 0);
}

void PruebaDiario::todosALaVez()
{
    constexpr int programas = 3;
    constexpr int trabajos = 30;
    QList<pid_t> hijos;
    for (int i = 0; i < programas; ++i) {
        const auto hijo = fork();
        if (hijo == 0) {
            Diario suyo(fichero);
            for (int n = 0; n < trabajos; ++n)
                suyo.terminar(suyo.empezar(u"%1-%2"_s.arg(i).arg(n)), true, u"hecho"_s, {});
            _exit(0);
        }
        hijos << hijo;
    }
    for (const auto hijo : hijos)
        waitpid(hijo, nullptr, 0);
    const Diario diario(fichero);
    QCOMPARE(diario.cuantas(), programas * trabajos);
    for (const auto &una : diario.lista())
        QCOMPARE(una.estado, Actividad::Estado::Bien);
}

void PruebaDiario::masDeCientoVeinte()
{
    Diario diario(fichero);
    const QAbstractItemModelTester vigia(&diario);
    const auto primera = diario.empezar(u"0"_s);
    for (int i = 1; i <= Diario::maximo; ++i)
        diario.empezar(QString::number(i));
    QCOMPARE(diario.cuantas(), Diario::maximo);
    QCOMPARE(diario.lista().first().titulo, u"120"_s);
    QCOMPARE(diario.lista().last().titulo, u"1"_s);
    diario.terminar(primera, true, u"tarde"_s, {});
    QCOMPARE(Diario(fichero).cuantas(), Diario::maximo);
}

void PruebaDiario::unTrabajoNuevoCierraLosDemasMenosElMasViejo()
{
    Diario diario(fichero);
    diario.empezar(u"viejo"_s);
    diario.empezar(u"medio"_s);
    diario.empezar(u"nuevo"_s);
    QCOMPARE(diario.lista()[0].estado, Actividad::Estado::EnMarcha);
    QCOMPARE(diario.lista()[1].estado, Actividad::Estado::Cancelada);
    QCOMPARE(diario.lista()[1].detalle, u"Empezando…"_s);
    QCOMPARE(diario.lista()[2].estado, Actividad::Estado::EnMarcha);
    QCOMPARE(diario.enMarcha(), 2);
}

void PruebaDiario::vistasHastaReiniciar()
{
    Diario diario(fichero);
    diario.terminar(diario.empezar(u"a"_s), false, u"mal"_s, {});
    QCOMPARE(diario.fallidas(), 1);
    diario.darPorVisto();
    QCOMPARE(diario.fallidas(), 0);
    diario.terminar(diario.empezar(u"b"_s), false, u"mal"_s, {});
    QCOMPARE(diario.fallidas(), 1);
    QCOMPARE(Diario(fichero).fallidas(), 2);
    diario.borrarTodo();
    QCOMPARE(leer(fichero), QByteArray("[]"));
}

void PruebaDiario::laDuracionVaSinUnos()
{
    Actividad una;
    una.empezo = QDateTime::currentDateTimeUtc();
    QVERIFY(!una.duracion());
    QVERIFY(una.cuandoEnPalabras().startsWith(u"hoy a las "_s));
    una.empezo = QDateTime(QDate(2025, 9, 4), QTime(9, 5));
    una.termino = una.empezo.addSecs(600);
    QCOMPARE(una.duracion(), u"10 minutos"_s);
    QCOMPARE(una.cuandoEnPalabras(), u"4 sept, 09:05"_s);
}

void PruebaDiario::unDiscoQueNoDejaEscribir()
{
    QVERIFY(QDir().mkpath(QFileInfo(fichero).path()));
    escribir(fichero, QByteArray("[") + entradaBien + "]");
    // A folder where the file's parent should be: nothing can be written, nothing is said.
    Diario sinSitio(fichero + u"/dentro/actividad.json"_s);
    sinSitio.terminar(sinSitio.empezar(u"x"_s), true, u"y"_s, {});
    QCOMPARE(sinSitio.cuantas(), 1);
    QCOMPARE(Diario(fichero).cuantas(), 1);
}

QTEST_GUILESS_MAIN(PruebaDiario)
#include "PruebaDiario.moc"
