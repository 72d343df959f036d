#include "core/Diario.h"
#include "core/Motor.h"
#include "core/Tarea.h"
#include "session/OperacionesDeBateria.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// What is made of the battery's and the networks' figures.
class PruebaBateria : public QObject
{
    Q_OBJECT

private slots:
    void veredictos_data();
    void veredictos();
    void redConAlgo_data();
    void redConAlgo();
    void salidasDelMotor();
    void historiales();
    void sinMotor();
};

void PruebaBateria::veredictos_data()
{
    QTest::addColumn<int>("maxima");
    QTest::addColumn<int>("disenio");
    QTest::addColumn<int>("salud");
    QTest::addColumn<QString>("veredicto");
    QTest::addColumn<bool>("toca");
    QTest::newRow("no design") << 2900 << 0 << 0 << u"Sin datos"_s << false;
    QTest::newRow("negative") << -1 << 3200 << 0 << u"Sin datos"_s << false;
    QTest::newRow("rounds to nothing") << 1 << 3200 << 0 << u"Sin datos"_s << false;
    QTest::newRow("more than new") << 3300 << 3200 << 103 << u"Como nueva"_s << false;
    QTest::newRow("90") << 900 << 1000 << 90 << u"Como nueva"_s << false;
    QTest::newRow("half away from zero") << 895 << 1000 << 90 << u"Como nueva"_s << false;
    QTest::newRow("89") << 894 << 1000 << 89 << u"Muy bien"_s << false;
    QTest::newRow("84") << 840 << 1000 << 84 << u"Bien, con uso"_s << false;
    QTest::newRow("80") << 800 << 1000 << 80 << u"Bien, con uso"_s << false;
    QTest::newRow("79") << 790 << 1000 << 79 << u"Gastada"_s << true;
    QTest::newRow("70") << 700 << 1000 << 70 << u"Gastada"_s << true;
    QTest::newRow("69") << 690 << 1000 << 69 << u"Para cambiar"_s << true;
}

void PruebaBateria::veredictos()
{
    QFETCH(int, maxima);
    QFETCH(int, disenio);
    DatosBateria pila;
    pila.maxima = maxima;
    pila.disenio = disenio;
    QTEST(pila.salud(), "salud");
    QTEST(pila.veredicto(), "veredicto");
    QTEST(pila.tocaCambiarla(), "toca");
    QVERIFY(pila.perdido() >= 0);
    pila.ciclos = 1500;
    QCOMPARE(pila.vidaGastada(), 1.0);
}

void PruebaBateria::redConAlgo_data()
{
    QTest::addColumn<QString>("operador");
    QTest::addColumn<QString>("sim");
    QTest::addColumn<bool>("wifi");
    QTest::addColumn<bool>("avion");
    QTest::addColumn<bool>("algo");
    QTest::newRow("all well") << u"Movil"_s << u"Lista"_s << true << false << false;
    QTest::newRow("whatever the case") << u"Movil"_s << u"SIM LISTA"_s << true << false << false;
    QTest::newRow("plane") << u"Movil"_s << u"Lista"_s << true << true << true;
    QTest::newRow("no operator") << QString() << u"Lista"_s << true << false << true;
    QTest::newRow("unknown operator") << u"Desconocido"_s << u"Lista"_s << true << false << true;
    QTest::newRow("no card") << u"Movil"_s << u"No hay tarjeta SIM"_s << true << false << true;
    QTest::newRow("no wifi") << u"Movil"_s << u"Lista"_s << false << false << true;
}

void PruebaBateria::redConAlgo()
{
    QFETCH(QString, operador);
    QFETCH(QString, sim);
    QFETCH(bool, wifi);
    QFETCH(bool, avion);
    QTEST((InfoRed{operador, {}, sim, wifi, avion}.hayAlgo()), "algo");
}

void PruebaBateria::salidasDelMotor()
{
    const auto bien = saludBateriaEn(u"una línea\n{\"tipo\":\"otro\",\"ciclos\":1}\n"
                                     "{\"tipo\":\"bateria\",\"ciclos\":214,\"maxima\":2912,\"disenio\":3200,"
                                     "\"temperatura\":2890}\n"_s);
    QCOMPARE(bien.ciclos, 214);
    QCOMPARE(bien.salud, 91);
    QCOMPARE(bien.grados, 28.9);
    const auto sinDisenio = saludBateriaEn(u"{\"tipo\":\"bateria\",\"ciclos\":3,\"maxima\":2912,\"disenio\":0}"_s);
    QVERIFY(sinDisenio.ciclos == 3 && !sinDisenio.salud && !sinDisenio.grados);
    for (const auto &mala : {QString(), u"{"_s, u"{\"tipo\":\"error\",\"motivo\":\"No.\"}"_s,
                             u"{\"tipo\":\"bateria\",\"ciclos\":\"muchos\"}"_s})
        QVERIFY(!saludBateriaEn(mala).ciclos);
}

void PruebaBateria::historiales()
{
    const auto ruta = QDir::homePath() + u"/bateria.json"_s;
    const auto leer = [&](const QByteArray &bytes) {
        QFile fichero(ruta);
        if (fichero.open(QIODevice::WriteOnly))
            fichero.write(bytes);
        fichero.close();
        return leerHistorialBateria(ruta);
    };
    QVERIFY(leerHistorialBateria(ruta).isEmpty());
    QVERIFY(leer("{}").isEmpty() && leer("").isEmpty() && leer("[1,null,[]").isEmpty());
    const auto leido = leer("[{\"fecha\":\"01/02/2026\",\"salud\":92},{\"fecha\":7,\"salud\":90},{\"salud\":90},null,"
                            "{\"fecha\":\"03/04/2026\",\"salud\":\"x\"},{\"fecha\":\"05/06/2026\",\"salud\":89}]");
    QCOMPARE(leido, (HistorialBateria{{u"01/02/2026"_s, 92}, {u"05/06/2026"_s, 89}}));
}

void PruebaBateria::sinMotor()
{
    QVERIFY(!Motor::disponible()); // there is none beside this test
    Diario diario;
    Tarea tarea(diario);
    int veces = 0;
    QVERIFY(!redDe(u"nadie"_s));
    mirarBateria(tarea, u"nadie"_s, {}, [&](const std::optional<DatosBateria> &pila, const HistorialBateria &) {
        QVERIFY(!pila);
        ++veces;
    });
    QCOMPARE(veces, 1);
    QVERIFY(!tarea.enMarcha() && tarea.terminadaBien() == false);
    QCOMPARE(tarea.registro().last(), u"No encuentro el motor del iPhone dentro de la app."_s);
}

QTEST_GUILESS_MAIN(PruebaBateria)
#include "PruebaBateria.moc"
