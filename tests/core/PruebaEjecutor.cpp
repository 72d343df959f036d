#include "core/Ejecutor.h"
#include "core/Herramientas.h"
#include "core/SegundoPlano.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <thread>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

const auto sh = u"/bin/sh"_s;

struct Resultado {
    QStringList lineas;
    QList<int> finales;
};

void lanzar(Ejecutor &ejecutor, Resultado &resultado, const QString &guion, const QString &programa = sh)
{
    ejecutor.lanzar(
        programa, {u"-c"_s, guion},
        [&](const QString &linea) {
            QVERIFY2(resultado.finales.isEmpty(), "a line after the ending");
            resultado.lineas << linea;
        },
        [&](int codigo) { resultado.finales << codigo; });
}

bool vive(pid_t proceso)
{
    QFile estado(u"/proc/%1/stat"_s.arg(proceso));
    return estado.open(QIODevice::ReadOnly) && !estado.readAll().contains(") Z ");
}

} // namespace

class PruebaEjecutor : public QObject
{
    Q_OBJECT

private slots:
    void partirEnLineas_data();
    void partirEnLineas();
    void laSalidaLlegaEnterAntesDelFinal();
    void losCaracteresCortadosNoSePierden();
    void unByteSueltoSePierdeSolo();
    void unEjecutableQueNoExiste();
    void elEntornoSustituyeYSeConsume();
    void cancelarAcabaConTodoElGrupo();
    void cancelarMataAlQueNoHaceCaso();
    void elHijoMuereConElPrograma();
    void rapido_data();
    void rapido();
    void rapidoCortaAlQueEscribeSinFin();
    void rapidoNoEsperaAlQueCierraSuSalida();
    void rapidoNoEsperaAlQueCalla_data();
    void rapidoNoEsperaAlQueCalla();
    void elSegundoPlanoAcabaAntesQueElPrograma();
    void unHijoTieneSuMemoria();
};

void PruebaEjecutor::partirEnLineas_data()
{
    QTest::addColumn<QString>("texto");
    QTest::addColumn<QStringList>("lineas");
    QTest::newRow("a bar repainted by carriage returns") << u"a\rb\n"_s << QStringList{u"a"_s, u"b"_s};
    QTest::newRow("the pair does not split") << u"a\r\nb"_s << QStringList{u"a\r\nb"_s};
    QTest::newRow("two returns before a feed") << u"a\r\r\nb"_s << QStringList{u"a"_s, u"\r\nb"_s};
    QTest::newRow("feed then return, as the backup bar") << u"x\n\r[=  ] 1%"_s << QStringList{u"x"_s, u"[=  ] 1%"_s};
    QTest::newRow("blank lines never arrive") << u"\n \t \n\n  a\t\n"_s << QStringList{u"a"_s};
    QTest::newRow("nothing") << QString() << QStringList();
}

void PruebaEjecutor::partirEnLineas()
{
    QFETCH(QString, texto);
    QTEST(vellora::partirEnLineas(texto), "lineas");
}

void PruebaEjecutor::laSalidaLlegaEnterAntesDelFinal()
{
    Ejecutor ejecutor;
    Resultado resultado;
    lanzar(ejecutor, resultado,
           u"i=0; while [ $i -lt 3000 ]; do echo linea $i; i=$((i+1)); done; echo fallo >&2; exit 7"_s);
    QVERIFY(ejecutor.enMarcha());
    QTRY_COMPARE(resultado.finales, QList<int>{7});
    QVERIFY(resultado.lineas.contains(u"fallo"_s));
    QVERIFY(resultado.lineas.contains(u"linea 2999"_s));
    QVERIFY(!ejecutor.enMarcha());
}

void PruebaEjecutor::losCaracteresCortadosNoSePierden()
{
    Ejecutor ejecutor;
    Resultado resultado;
    lanzar(ejecutor, resultado, u"printf 'a\\303'; sleep 0.3; printf '\\261o\\n'; sleep 0.3; printf '\\377\\n'"_s);
    QTRY_COMPARE(resultado.finales, QList<int>{0});
    QCOMPARE(resultado.lineas, (QStringList{u"a"_s, u"ño"_s})); // the last batch is no text at all
}

void PruebaEjecutor::unByteSueltoSePierdeSolo()
{
    Ejecutor ejecutor;
    Resultado resultado;
    // First bytes of characters that never come: at the end of a batch, and in its midst.
    lanzar(ejecutor, resultado,
           u"printf 'uno\\n\\303'; sleep 0.3; printf 'dos\\n'; sleep 0.3; printf 'tr\\361es\\ncuatro\\n'"_s);
    QTRY_COMPARE(resultado.finales, QList<int>{0});
    QCOMPARE(resultado.lineas, (QStringList{u"uno"_s, u"dos"_s, u"tres"_s, u"cuatro"_s}));
}

void PruebaEjecutor::unEjecutableQueNoExiste()
{
    Ejecutor ejecutor;
    ejecutor.entornoExtra = Ejecutor::Entorno{{u"A"_s, u"1"_s}};
    Resultado resultado;
    lanzar(ejecutor, resultado, {}, u"/no/existe"_s);
    QVERIFY(resultado.finales.isEmpty());
    QTRY_COMPARE(resultado.finales, QList<int>{-1});
    QCOMPARE(resultado.lineas.size(), 1);
    QVERIFY(resultado.lineas.first().startsWith(u"No se pudo arrancar: "_s));
    QVERIFY(!ejecutor.entornoExtra);
    QVERIFY(!ejecutor.enMarcha());
}

void PruebaEjecutor::elEntornoSustituyeYSeConsume()
{
    qputenv("HEREDADA", "si");
    Ejecutor ejecutor;
    ejecutor.entornoExtra = Ejecutor::Entorno{{u"NUEVA"_s, u"una"_s}, {u"PATH"_s, u"/nada"_s}};
    Resultado primero;
    const auto guion = u"echo \"$HEREDADA|$NUEVA|$PYTHONUNBUFFERED|$PATH\""_s;
    const auto ruta = Herramientas::rutasBusqueda().join(u':');
    lanzar(ejecutor, primero, guion);
    QVERIFY(!ejecutor.entornoExtra);
    QTRY_COMPARE(primero.finales.size(), 1);
    QCOMPARE(primero.lineas, QStringList{u"|una|1|"_s + ruta});
    Resultado segundo;
    lanzar(ejecutor, segundo, guion);
    QTRY_COMPARE(segundo.finales.size(), 1);
    QCOMPARE(segundo.lineas, QStringList{u"si||1|"_s + ruta});
}

void PruebaEjecutor::cancelarAcabaConTodoElGrupo()
{
    Ejecutor ejecutor;
    Resultado resultado;
    lanzar(ejecutor, resultado,
           u"sh -c 'trap \"\" TERM; echo $$; exec sleep 60' & sh -c 'echo $$; exec sleep 60' & wait"_s);
    QTRY_COMPARE(resultado.lineas.size(), 2);
    ejecutor.cancelar();
    ejecutor.cancelar();
    QTRY_COMPARE(resultado.finales, QList<int>{SIGTERM});
    for (const auto &nieto : std::as_const(resultado.lineas))
        QTRY_VERIFY(!vive(nieto.toInt()));
    QTest::qWait(100);
    QCOMPARE(resultado.finales.size(), 1);
}

void PruebaEjecutor::cancelarMataAlQueNoHaceCaso()
{
    Ejecutor ejecutor;
    Resultado resultado;
    lanzar(ejecutor, resultado, u"trap '' TERM; echo sordo; while :; do sleep 0.1; done"_s);
    QTRY_COMPARE(resultado.lineas.size(), 1);
    ejecutor.cancelar();
    QTRY_COMPARE_WITH_TIMEOUT(resultado.finales, QList<int>{SIGKILL}, Ejecutor::graciaAntesDeMatar + 3000);
}

void PruebaEjecutor::elHijoMuereConElPrograma()
{
    // A copy of this program starts a child and is killed without a word.
    QProcess yo;
    yo.start(QCoreApplication::applicationFilePath(), {u"--hijo"_s});
    QVERIFY(yo.waitForReadyRead(5000));
    const auto hijo = yo.readAll().trimmed().toInt();
    QVERIFY(vive(hijo));
    yo.kill();
    QVERIFY(yo.waitForFinished());
    QTRY_VERIFY(!vive(hijo));
}

void PruebaEjecutor::rapido_data()
{
    QTest::addColumn<QString>("programa");
    QTest::addColumn<QString>("guion");
    QTest::addColumn<QString>("salida");
    QTest::newRow("output only, errors thrown away") << sh << u"echo uno; echo dos >&2"_s << u"uno\n"_s;
    QTest::newRow("a flood of errors does not block")
        << sh << u"head -c 200000 /dev/zero >&2; echo fin"_s << u"fin\n"_s;
    QTest::newRow("text before a failure counts") << sh << u"echo antes; exit 3"_s << u"antes\n"_s;
    QTest::newRow("not UTF-8") << sh << u"printf 'a\\377'"_s << QString();
    QTest::newRow("cut at its end") << sh << u"printf 'a\\303'"_s << QString();
    QTest::newRow("does not exist") << u"/no/existe"_s << QString() << QString();
}

void PruebaEjecutor::rapido()
{
    QFETCH(QString, programa);
    QFETCH(QString, guion);
    QTEST(Ejecutor::rapido(programa, {u"-c"_s, guion}, 10), "salida");
}

void PruebaEjecutor::rapidoCortaAlQueEscribeSinFin()
{
    QElapsedTimer reloj;
    reloj.start();
    const auto salida = Ejecutor::rapido(sh, {u"-c"_s, u"while :; do echo y; sleep 0.05; done"_s}, 0.5);
    QVERIFY(salida.startsWith(u"y\n"_s));
    QVERIFY(reloj.elapsed() < 10000);
}

void PruebaEjecutor::unHijoTieneSuMemoria()
{
    const auto pide = u"try: bytearray(600 << 20); print('cabe')\nexcept MemoryError: print('no cabe')"_s;
    QCOMPARE(Ejecutor::rapido(u"/usr/bin/python3"_s, {u"-c"_s, pide}, 20), u"no cabe\n"_s);
}

void PruebaEjecutor::rapidoNoEsperaAlQueCierraSuSalida()
{
    QElapsedTimer reloj;
    reloj.start();
    QCOMPARE(Ejecutor::rapido(sh, {u"-c"_s, u"echo ya; exec >&-; sleep 60"_s}, 0.5), u"ya\n"_s);
    QVERIFY(reloj.elapsed() < 20000);
}

void PruebaEjecutor::rapidoNoEsperaAlQueCalla_data()
{
    QTest::addColumn<QString>("guion");
    QTest::addColumn<QString>("salida");
    QTest::newRow("silent from the start") << u"sleep 20; echo tarde"_s << QString();
    QTest::newRow("silent after a word") << u"echo algo; sleep 20; echo tarde"_s << u"algo\n"_s;
    QTest::newRow("deaf to the polite request") << u"trap '' TERM; echo algo; sleep 20; echo tarde"_s << u"algo\n"_s;
    QTest::newRow("its own child is the silent one")
        << u"(trap '' TERM; sleep 20; echo tarde) & echo algo; wait"_s << u"algo\n"_s;
}

void PruebaEjecutor::rapidoNoEsperaAlQueCalla()
{
    QFETCH(QString, guion);
    const auto respuesta = Ejecutor::preguntar(sh, {u"-c"_s, guion}, 0.5);
    QVERIFY(!respuesta.aTiempo);
    QTEST(respuesta.salida, "salida");
    QVERIFY(Ejecutor::preguntar(sh, {u"-c"_s, u"exit 3"_s}, 10).aTiempo);
    // What a tool leaves behind holds nobody up, though it keeps the output open.
    QCOMPARE(Ejecutor::rapido(sh, {u"-c"_s, u"(sleep 20; echo tarde) & echo ya"_s}, 10), u"ya\n"_s);
}

void PruebaEjecutor::elSegundoPlanoAcabaAntesQueElPrograma()
{
    // A copy of this program ends while a thread of its waits for a tool and another one writes.
    QProcess yo;
    yo.start(QCoreApplication::applicationFilePath(), {u"--fin"_s});
    QVERIFY(yo.waitForFinished(30000));
    QCOMPARE(yo.exitCode(), 0);
    const auto dicho = QString::fromUtf8(yo.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    QVERIFY2(dicho.contains(u"herramienta cortada"_s), qPrintable(dicho.join(u'|')));
    QVERIFY2(dicho.contains(u"escrito"_s), qPrintable(dicho.join(u'|')));
    QVERIFY(!dicho.contains(u"entregado"_s));
    const auto cortada = dicho.indexOf(u"herramienta cortada"_s);
    const auto hijo = dicho.value(cortada - 1).toInt();
    QVERIFY(hijo > 0 && !vive(hijo));
}

namespace
{

/// What the copy of this program does that ends with threads at work.
void acabarConTrabajoDelante()
{
    const auto decir = [](const char *que) {
        std::puts(que);
        std::fflush(stdout);
    };
    const auto entregado = [decir](int) {
        decir("entregado");
    };
    enSegundoPlano(
        qApp,
        [decir] {
            const auto hecho = Ejecutor::preguntar(sh, {u"-c"_s, u"echo $$; exec sleep 60"_s}, 60);
            std::printf("%d\n", hecho.salida.trimmed().toInt());
            decir(hecho.aTiempo ? "herramienta sin cortar" : "herramienta cortada");
            return 0;
        },
        entregado);
    enSegundoPlano(
        qApp,
        [decir] {
            std::this_thread::sleep_for(std::chrono::seconds(1));
            decir("escrito");
            return 0;
        },
        entregado);
    QTimer::singleShot(300, qApp, &QCoreApplication::quit);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication programa(argc, argv);
    if (programa.arguments().contains(u"--fin"_s)) {
        acabarConTrabajoDelante();
        return QCoreApplication::exec();
    }
    if (programa.arguments().contains(u"--hijo"_s)) {
        Ejecutor ejecutor;
        ejecutor.lanzar(
            sh, {u"-c"_s, u"echo $$; exec sleep 60"_s},
            [](const QString &linea) {
                std::puts(qPrintable(linea));
                std::fflush(stdout);
            },
            [](int) {});
        return QCoreApplication::exec();
    }
    PruebaEjecutor prueba;
    return QTest::qExec(&prueba, argc, argv);
}

#include "PruebaEjecutor.moc"
