#include "core/Motor.h"
#include "engine/Ordenes.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace vellora;
using namespace vellora::motor;

/// What the engine says, read as the program reads it.
class PruebaAvisos : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(pipe2(tubo.data(), O_NONBLOCK) == 0);
        avisar = std::make_unique<Avisos>(tubo[1]);
    }
    void cleanup()
    {
        close(tubo[0]);
        close(tubo[1]);
    }
    void cadaAvisoEsUnaLinea();
    void loQueNoCabeVaEnUnFichero_data();
    void loQueNoCabeVaEnUnFichero();
    void sinDondeEscribirNoSeDice();
    void unaLineaNuncaPasaPorAviso();
    void elProgresoNoAhoga();
    void ordenesQueNoSePuedenHacer_data();
    void ordenesQueNoSePuedenHacer();
    void soloSiEsSi();

private:
    QString leido()
    {
        QByteArray todo(1 << 16, '\0');
        const auto n = read(tubo[0], todo.data(), static_cast<size_t>(todo.size()));
        return QString::fromUtf8(todo.first(std::max<ssize_t>(n, 0)));
    }

    std::array<int, 2> tubo{};
    std::unique_ptr<Avisos> avisar;
};

void PruebaAvisos::cadaAvisoEsUnaLinea()
{
    avisar->total(1234);
    avisar->avisar(u"fin"_s, {{u"texto"_s, u"dos\nlíneas y \"comillas\""_s}});
    QCOMPARE(avisar->error(u"Sin iPhone."_s), 1);
    const auto lineas = leido().split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lineas.size(), 3);
    QCOMPARE(Motor::interpretar(lineas[0])->entero("n"_L1), 1234);
    QCOMPARE(Motor::interpretar(lineas[1])->texto("texto"_L1), u"dos\nlíneas y \"comillas\""_s);
    QCOMPARE(Motor::interpretar(lineas[2])->texto("motivo"_L1), u"Sin iPhone."_s);
}

void PruebaAvisos::loQueNoCabeVaEnUnFichero_data()
{
    QTest::addColumn<int>("largo");
    QTest::addColumn<bool>("enFichero");
    // {"texto":"…","tipo":"fin"} and the line feed are 26 bytes besides the text.
    QTest::newRow("just fits") << 4096 - 26 << false;
    QTest::newRow("one too many") << 4096 - 25 << true;
    QTest::newRow("large") << 3'000'000 << true;
}

void PruebaAvisos::loQueNoCabeVaEnUnFichero()
{
    QFETCH(int, largo);
    QFETCH(bool, enFichero);
    const QString texto(largo, u'x');
    QVERIFY(avisar->avisar(u"fin"_s, {{u"texto"_s, texto}}));
    const auto linea = leido();
    QVERIFY(linea.size() <= Avisos::largoMaximo);
    const QDir sesion(qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/vellora"_s);
    const auto ficheros = sesion.entryInfoList({u"aviso-*"_s}, QDir::Files);
    QCOMPARE(ficheros.size(), enFichero ? 1 : 0);
    if (enFichero)
        QCOMPARE(ficheros[0].permissions() & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
    QCOMPARE(Motor::interpretar(linea.trimmed())->texto("texto"_L1), texto);
    QVERIFY(sesion.entryList({u"aviso-*"_s}).isEmpty());
}

void PruebaAvisos::sinDondeEscribirNoSeDice()
{
    const auto sesion = qgetenv("XDG_RUNTIME_DIR");
    const auto cache = qgetenv("XDG_CACHE_HOME");
    qputenv("XDG_RUNTIME_DIR", "/proc/self");
    qputenv("XDG_CACHE_HOME", "/proc/self");
    QVERIFY(!avisar->avisar(u"fin"_s, {{u"texto"_s, QString(5000, u'x')}}));
    QVERIFY(leido().isEmpty());
    qputenv("XDG_RUNTIME_DIR", sesion);
    qputenv("XDG_CACHE_HOME", cache);
}

void PruebaAvisos::unaLineaNuncaPasaPorAviso()
{
    avisar->linea(u"  {\"tipo\":\"fin\"}\n{\"tipo\":\"fin\"}"_s);
    for (const auto &linea : leido().split(u'\n', Qt::SkipEmptyParts))
        QVERIFY(!Motor::interpretar(linea.trimmed()));
}

void PruebaAvisos::elProgresoNoAhoga()
{
    for (int i = 1; i <= 1000; ++i)
        avisar->progreso(i);
    const auto lineas = leido().split(u'\n', Qt::SkipEmptyParts);
    QVERIFY(!lineas.isEmpty() && lineas.size() < 100);
    QCOMPARE(Motor::interpretar(lineas[0])->entero("hechos"_L1), 1);
}

void PruebaAvisos::ordenesQueNoSePuedenHacer_data()
{
    QTest::addColumn<QStringList>("argumentos");
    QTest::addColumn<QString>("motivo");
    QTest::newRow("nothing") << QStringList{} << u"No se ha dicho qué hacer."_s;
    QTest::newRow("unknown") << QStringList{u"bailar"_s} << u"No conozco la orden «bailar»."_s;
    QTest::newRow("no phone named") << QStringList{u"extraer"_s} << u"A la orden «extraer» le falta el dato «udid»."_s;
    QTest::newRow("no destination") << QStringList{u"extraer"_s, u"U"_s, u"/tmp"_s}
                                    << u"A la orden «extraer» le falta el dato «destino»."_s;
}

void PruebaAvisos::ordenesQueNoSePuedenHacer()
{
    QFETCH(QStringList, argumentos);
    QVERIFY(ejecutarOrden(argumentos, *avisar) != 0);
    const auto aviso = Motor::interpretar(leido().trimmed());
    QVERIFY(aviso.has_value());
    QCOMPARE(aviso->tipo, u"error"_s);
    QTEST(aviso->texto("motivo"_L1).value_or(QString()), "motivo");
}

void PruebaAvisos::soloSiEsSi()
{
    qunsetenv("CONFIRMADO");
    QVERIFY(!confirmado());
    for (const char *otra : {"", "si", "NO", "SI ", "1"}) {
        qputenv("CONFIRMADO", otra);
        QVERIFY2(!confirmado(), otra);
    }
    qputenv("CONFIRMADO", "SI");
    QVERIFY(confirmado());
}

QTEST_GUILESS_MAIN(PruebaAvisos)
#include "PruebaAvisos.moc"
