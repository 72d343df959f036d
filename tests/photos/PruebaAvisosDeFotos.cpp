#include "core/CarpetaPrivada.h"
#include "core/Diario.h"
#include "core/Tarea.h"
#include "images/ImagenReducida.h"
#include "photos/BorrarFotos.h"
#include "photos/CopiarFotos.h"
#include "photos/ElegidasDelCarrete.h"
#include "photos/Fotos.h"
#include "photos/Galeria.h"
#include "photos/LiberarEspacio.h"
#include "session/Consentimiento.h"
#include "session/Modelo.h"
#include "support/BaseDePrueba.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// What the jobs on photos make of the engine's notices, whole or lacking: an engine of the test's own says them.
class PruebaAvisosDeFotos : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void copiar_data();
    void copiar();
    void planDeLiberar();
    void liberar_data();
    void liberar();
    void biblioteca_data();
    void biblioteca();
    void todas();
    void elegidas_data();
    void elegidas();
    void recuperar_data();
    void recuperar();
    void lista();
    void grupos();
    void carpeta();
    void miniaturasDeMas();
    void pocoSitio_data();
    void pocoSitio();
    void elFinTardioNoCierraElTrabajoSiguiente();
    void borradoQueSeCancela();

private:
    /// The engine will say these lines and end so.
    static void dira(const QByteArrayList &avisos, int codigo = 0)
    {
        QVERIFY(escribirFichero(QDir::homePath() + u"/avisos"_s, avisos.join('\n') + '\n'));
        QVERIFY(escribirFichero(QDir::homePath() + u"/codigo"_s, QByteArray::number(codigo)));
    }
    QStringList recibido() const
    {
        return QString::fromUtf8(leerFichero(QDir::homePath() + u"/recibido"_s)).split(u'\n', Qt::SkipEmptyParts);
    }
    /// Its first look for phones is over: a thread of it must not outlive the test.
    static bool asentado(Modelo &modelo)
    {
        return QTest::qWaitFor([&] { return !modelo.buscando(); }, 20'000);
    }
    bool acaba()
    {
        return QTest::qWaitFor([this] { return !tarea.enMarcha(); }, 10'000);
    }

    Diario diario;
    Tarea tarea{diario};
};

void PruebaAvisosDeFotos::init()
{
    QFile::remove(QDir::homePath() + u"/recibido"_s);
}

void PruebaAvisosDeFotos::copiar_data()
{
    QTest::addColumn<QByteArrayList>("avisos");
    QTest::addColumn<int>("codigo");
    QTest::addColumn<QString>("detalle");
    QTest::addColumn<QStringList>("registro");
    QTest::addColumn<qint64>("hechos");
    QTest::newRow("whole")
        << QByteArrayList{R"({"tipo":"total","n":3})", R"({"tipo":"fallo","fichero":"a.JPG","motivo":"no"})",
                          R"({"tipo":"progreso","hechos":3,"copiados":1,"saltados":1,"fichero":"b"})",
                          R"({"tipo":"fin","copiados":1,"saltados":1,"fallos":1})"}
        << 1 << u"1 archivos nuevos copiados, 1 ya los tenías"_s
        << QStringList{u"El carrete tiene 3 archivos."_s, u"No pude con a.JPG: no"_s,
                       u"Terminado: 1 nuevos, 1 repetidos, 1 con problemas."_s}
        << qint64(3);
    QTest::newRow("counts that are missing stay as they were")
        << QByteArrayList{R"({"tipo":"total"})", R"({"tipo":"progreso","hechos":2,"copiados":2,"saltados":7})",
                          R"({"tipo":"progreso","fichero":"%1 %2.JPG"})"}
        << 0 << u"2 nuevos · 7 ya estaban · %1 %2.JPG"_s << QStringList{u"El carrete tiene 0 archivos."_s} << qint64(0);
    QTest::newRow("empty failures and other notices")
        << QByteArrayList{R"({"tipo":"fallo"})", R"({"tipo":"otro","n":1})", R"({"tipo":"error","motivo":"M"})",
                          R"({"tipo":"fin"})", "una línea suelta"}
        << 1 << u"0 archivos nuevos copiados, 0 ya los tenías"_s
        << QStringList{u"No pude con ?: "_s, u"Error: M"_s, u"Terminado: 0 nuevos, 0 repetidos, 0 con problemas."_s,
                       u"una línea suelta"_s}
        << qint64(0);
}

void PruebaAvisosDeFotos::copiar()
{
    QFETCH(const QByteArrayList, avisos);
    QFETCH(const int, codigo);
    QFETCH(const QString, detalle);
    QFETCH(const QStringList, registro);
    QFETCH(const qint64, hechos);
    dira(avisos, codigo);
    const auto destino = QDir::homePath() + u"/a/b/Fotos"_s;
    tarea.cerrarAviso();
    copiarFotosRapido(tarea, u"U"_s, destino);
    QCOMPARE(tarea.detalle(), u"Conectando con el iPhone…"_s);
    QVERIFY(!tarea.oculta()); // also after an earlier notice was closed
    QVERIFY(acaba());
    QCOMPARE(recibido(), (QStringList{u"copiar"_s, u"U"_s, destino, u"CONFIRMADO="_s}));
    QCOMPARE(tarea.titulo(), u"Copiando fotos y vídeos"_s);
    QCOMPARE(tarea.detalle(), detalle);
    QCOMPARE(tarea.registro(), registro);
    QCOMPARE(tarea.hechos(), hechos);
    QCOMPARE(tarea.terminadaBien(), codigo == 0);
    QCOMPARE(tarea.carpetaResultado(), destino);
    QVERIFY(QDir(destino).exists());
}

void PruebaAvisosDeFotos::planDeLiberar()
{
    dira({R"({"tipo":"plan","a_borrar":7,"bytes":2500000000})"});
    std::optional<PlanLiberar> plan;
    planDeLiberacion(tarea, u"U"_s, u"/fotos"_s, [&](const PlanLiberar &hecho) { plan = hecho; });
    QVERIFY(acaba() && plan);
    QCOMPARE(recibido(), (QStringList{u"liberar"_s, u"U"_s, u"/fotos"_s, u"CONFIRMADO="_s}));
    QVERIFY(plan->archivos == 7 && plan->sinCopiar == 0 && plan->bytes == 2'500'000'000);
    QCOMPARE(tarea.titulo(), u"Calculando qué se puede borrar"_s);
    QCOMPARE(tarea.detalle(), u"7 archivos se pueden borrar sin riesgo"_s);
    // Whatever stands in the owner's environment, only an answer of theirs confirms.
    qputenv("CONFIRMADO", "SI");
    planDeLiberacion(tarea, u"U"_s, u"/fotos"_s, [](const PlanLiberar &) {});
    QVERIFY(acaba());
    QCOMPARE(recibido().last(), u"CONFIRMADO="_s);
    qunsetenv("CONFIRMADO");
}

void PruebaAvisosDeFotos::liberar_data()
{
    QTest::addColumn<QByteArray>("plan");
    QTest::addColumn<QByteArray>("fin");
    QTest::addColumn<QStringList>("registro");
    const auto voy = u"Voy a borrar 7 archivos que ya están a salvo en el Mac."_s;
    const auto reinicia = u"REINICIA EL IPHONE: la app Fotos se reconstruirá con lo que queda."_s;
    const auto noPude = u"No pude tirar la lista de la app Fotos; puede que las sigas viendo."_s;
    QTest::newRow("all told")
        << QByteArray(R"({"tipo":"plan","a_borrar":7,"se_quedan":2})")
        << QByteArray(
               R"({"tipo":"fin","borrados":7,"liberados":1500000000,"quedan_en_carrete":2,"lista_borrada":true})")
        << QStringList{voy, u"Dejo 2 archivos en el iPhone porque NO están copiados."_s,
                       u"Espacio recuperado: 1,5 GB."_s,
                       u"Quedan 2 fotos en el carrete (las que no estaban copiadas)."_s, reinicia};
    const QByteArray siete = R"({"tipo":"plan","a_borrar":7})";
    QTest::newRow("none stays, the list not told of")
        << QByteArray(R"({"tipo":"plan","a_borrar":7,"se_quedan":0})") << QByteArray(R"({"tipo":"fin","borrados":7})")
        << QStringList{voy, u"Espacio recuperado: 0 MB."_s,
                       u"Quedan 0 fotos en el carrete (las que no estaban copiadas)."_s, noPude};
    QTest::newRow("the list told of by no boolean")
        << siete << QByteArray(R"({"tipo":"fin","borrados":7,"lista_borrada":1})")
        << QStringList{voy, u"Espacio recuperado: 0 MB."_s,
                       u"Quedan 0 fotos en el carrete (las que no estaban copiadas)."_s, noPude};
    QTest::newRow("nothing has gone")
        << siete << QByteArray(R"({"tipo":"fin","borrados":0,"siguen_ahi":7,"sin_prueba":5,"se_quedan":2})")
        << QStringList{voy, u"No he borrado nada: la copia de 5 archivos en el ordenador ya no está o no se lee igual; "
                            "el iPhone no ha dejado borrar 2 archivos; 2 archivos no están copiados."_s};
    QTest::newRow("a folder kept back")
        << siete << QByteArray(R"({"tipo":"fin","borrados":6,"siguen_ahi":1,"sin_prueba":1,"sin_mirar":1})")
        << QStringList{
               voy, u"Espacio recuperado: 0 MB."_s,
               u"1 archivos se quedan en el iPhone porque su copia no se ha podido comprobar. Cópialos otra vez."_s,
               u"No sé cuántas fotos quedan: el iPhone no me ha dejado mirar todas sus carpetas."_s,
               u"He dejado como está la lista de la app Fotos, porque no sé todo lo que queda. REINICIA EL "
               "IPHONE."_s};
}

void PruebaAvisosDeFotos::liberar()
{
    QFETCH(const QByteArray, plan);
    QFETCH(const QByteArray, fin);
    QFETCH(const QStringList, registro);
    dira({plan, R"({"tipo":"progreso","hechos":3})", fin});
    liberarEspacio(tarea, u"U"_s, u"/fotos"_s);
    QVERIFY(acaba());
    QCOMPARE(recibido().last(), u"CONFIRMADO=SI"_s);
    QCOMPARE(tarea.registro(), registro);
    QCOMPARE(tarea.deTotal(), qint64(7));
    QCOMPARE(tarea.terminadaBien(), true);
}

void PruebaAvisosDeFotos::biblioteca_data()
{
    QTest::addColumn<QByteArray>("fin");
    QTest::addColumn<QString>("detalle");
    QTest::addColumn<QString>("resumen");
    const auto otraVez =
        u".\n\nSuele ser porque el iPhone está usando esos archivos. Desbloquéalo, cierra la app Fotos y dale otra vez.\n\n👉 REINICIA EL IPHONE para que la app Fotos se ponga al día."_s;
    QTest::newRow("complete")
        << QByteArray(
               R"({"tipo":"fin","borrados":12,"quedan_fotos":0,"quedan_miniaturas":0,"lista_borrada":true,"fotos_en_copia":12345})")
        << u"Todo borrado · 12 archivos"_s
        << u"Listo: 12 archivos borrados. No queda ni una foto, ni una miniatura, ni la lista.\n\n👉 REINICIA EL IPHONE AHORA. Al arrancar, la app Fotos se reconstruye vacía.\n\nTus 12.345 fotos siguen a salvo en el Mac."_s;
    QTest::newRow("a thumbnail stays")
        << QByteArray(R"({"tipo":"fin","borrados":12,"quedan_miniaturas":1,"lista_borrada":true})")
        << u"Borrado incompleto"_s << u"He borrado 12 archivos, pero quedan 0 fotos y 1 miniaturas"_s + otraVez;
    QTest::newRow("the list stays")
        << QByteArray(R"({"tipo":"fin","borrados":12})") << u"Borrado incompleto"_s
        << u"He borrado 12 archivos, pero quedan 0 fotos y 0 miniaturas, y la lista de la app Fotos sigue ahí"_s +
               otraVez;
    QTest::newRow("a folder kept back")
        << QByteArray(R"({"tipo":"fin","borrados":12,"lista_borrada":true,"sin_mirar":1})") << u"Borrado incompleto"_s
        << u"He borrado 12 archivos, pero quedan 0 fotos y 0 miniaturas, y hay carpetas que el iPhone no me ha dejado mirar"_s +
               otraVez;
}

void PruebaAvisosDeFotos::biblioteca()
{
    QFETCH(const QByteArray, fin);
    QFETCH(const QString, detalle);
    QFETCH(const QString, resumen);
    dira({R"({"tipo":"total","n":12})", R"({"tipo":"progreso","hechos":1,"fichero":"%2.JPG","copiados":1})", fin});
    QString dicho;
    borrarBibliotecaDeFotos(tarea, u"U"_s, u"/copias"_s, [&](const QString &texto) { dicho = texto; });
    QVERIFY(acaba());
    QCOMPARE(recibido(), (QStringList{u"borrar-biblioteca-fotos"_s, u"U"_s, u"/copias"_s, u"CONFIRMADO=SI"_s}));
    QCOMPARE(tarea.registro().first(), u"Voy por partes: carrete, miniaturas, ediciones y la lista de la app Fotos."_s);
    QCOMPARE(tarea.detalle(), detalle);
    QCOMPARE(dicho, resumen);
}

void PruebaAvisosDeFotos::todas()
{
    dira({R"({"tipo":"copia","bien":true,"telefono":"El de Marta","fecha":1780000000,"fotos":43210,"solo_icloud":3})",
          R"({"tipo":"plan","a_borrar":5,"bytes":9000000})"});
    PlanDeVaciado plan;
    planBorrarTodasLasFotos(tarea, u"U"_s, u"/copias"_s, [&](const PlanDeVaciado &hecho) { plan = hecho; });
    QVERIFY(acaba());
    QVERIFY(plan.archivos == 5 && plan.copia.lasTieneTodas);
    QVERIFY2(preguntaDeVaciar(plan).contains(
                 u"«El de Marta» del 28 de mayo de 2026 a las 22:26 y, recién comprobado, tiene las 43.210 fotos") &&
                 preguntaDeVaciar(plan).contains(u"Otras 3 solo están en iCloud"),
             qPrintable(preguntaDeVaciar(plan)));
    QCOMPARE(tarea.detalle(), u"5 archivos en el carrete"_s);
    QCOMPARE(recibido().last(), u"CONFIRMADO="_s);
    dira({R"({"tipo":"total","n":5})", R"({"tipo":"progreso","hechos":2})",
          R"({"tipo":"fin","borrados":5,"liberados":9000000})"});
    borrarTodasLasFotos(tarea, u"U"_s, u"/copias"_s);
    QVERIFY(acaba());
    QCOMPARE(recibido().last(), u"CONFIRMADO=SI"_s);
    QCOMPARE(tarea.detalle(), u"5 archivos borrados · 9 MB libres"_s);
    QCOMPARE(tarea.registro().size(), 5);
    QCOMPARE(tarea.registro()[1], QString());
}

void PruebaAvisosDeFotos::elegidas_data()
{
    QTest::addColumn<QByteArrayList>("avisos");
    QTest::addColumn<QString>("detalle");
    QTest::addColumn<QString>("resumen");
    const auto prueba =
        u".\n\nDesbloquea el iPhone, cierra la app Fotos y prueba otra vez.\n\n👉 REINICIA EL IPHONE para que la app Fotos se ponga al día."_s;
    const QByteArray bien = R"({"tipo":"fin","borrados":2,"siguen_ahi":0,"quedan_en_carrete":9,"lista_borrada":true})";
    QTest::newRow("all gone")
        << QByteArrayList{bien} << u"Borrado · quedan 9 fotos"_s
        << u"Listo. He borrado lo que marcaste y he tirado la lista de la app Fotos.\n\n👉 REINICIA EL IPHONE. Al arrancar, la app Fotos se reconstruye con las 9 fotos que quedan; lo borrado no vuelve."_s;
    QTest::newRow("an error on the way") << QByteArrayList{R"({"tipo":"error","motivo":"M"})", bien}
                                         << u"Borrado incompleto"_s
                                         << u"He borrado 2 archivos, pero 0 siguen ahí"_s + prueba;
    QTest::newRow("the list stays")
        << QByteArrayList{R"({"tipo":"fin","borrados":1,"siguen_ahi":1})"} << u"Borrado incompleto"_s
        << u"He borrado 1 archivos, pero 1 siguen ahí y no pude tirar la lista de la app Fotos"_s + prueba;
    QTest::newRow("nothing has gone")
        << QByteArrayList{R"({"tipo":"fin","borrados":0,"siguen_ahi":2,"sin_prueba":2,"quedan_en_carrete":9})"}
        << u"No se ha borrado nada"_s
        << u"No he borrado nada: la copia de 2 archivos en el ordenador ya no está o no se lee igual.\n\nDesbloquea el iPhone, cierra la app Fotos y prueba otra vez."_s;
    QTest::newRow("stopped on its own account")
        << QByteArrayList{R"({"tipo":"total","n":3})", R"({"tipo":"progreso","hechos":1,"copiados":1})",
                          R"({"tipo":"cortado","borrados":2,"quedan":1})", R"({"tipo":"error","motivo":"Se acabó."})"}
        << u"Borrado a medias: 2 archivos fuera, quedan 1 archivo en el iPhone. REINICIA EL IPHONE."_s
        << u"Borrado a medias: 2 archivos fuera, quedan 1 archivo en el iPhone. REINICIA EL IPHONE. Hasta que lo reinicies, la app Fotos puede seguir enseñando las que ya no están.\n\nSe acabó."_s;
    QTest::newRow("died without a word")
        << QByteArrayList{R"({"tipo":"total","n":3})", R"({"tipo":"progreso","hechos":2,"copiados":1})"}
        << u"Borrado a medias: 1 archivo fuera, quedan 2 archivos en el iPhone. REINICIA EL IPHONE."_s
        << u"Borrado a medias: 1 archivo fuera, quedan 2 archivos en el iPhone. REINICIA EL IPHONE. Hasta que lo reinicies, la app Fotos puede seguir enseñando las que ya no están."_s;
}

void PruebaAvisosDeFotos::elegidas()
{
    QFETCH(const QByteArrayList, avisos);
    QFETCH(const QString, detalle);
    QFETCH(const QString, resumen);
    dira(avisos);
    const QStringList rutas{u"/DCIM/100APPLE/IMG_0001.HEIC"_s, u"/DCIM/100APPLE/ñ 1.MOV"_s};
    const auto mia = QDir::homePath() + u"/tesis.odt"_s;
    QVERIFY(escribirFichero(mia, "importante"));
    QFile::link(mia, qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/vellora-elegidas.txt"_s);
    QString dicho;
    borrarElegidasDeVerdad(tarea, u"U"_s, {rutas, {rutas[1]}, u"/fotos"_s},
                           [&](const QString &texto) { dicho = texto; });
    QVERIFY(acaba());
    QCOMPARE(recibido()[0], u"borrar-elegidas-de-verdad"_s);
    QCOMPARE(recibido().last(), u"CONFIRMADO=SI"_s);
    QVERIFY(recibido()[2].endsWith(u"/vellora-elegidas.txt"));
    const auto lista = QDir::homePath() + u"/lista"_s;
    QCOMPARE(leerFichero(lista), rutas.join(u'\n').toUtf8() + '\n');
    QCOMPARE(QFile::permissions(lista) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    // Another program's list has another folder, and what stands under the name of old is let alone.
    QVERIFY(recibido()[2].startsWith(CarpetaPrivada::enLaCache(u"trabajo/"_s)));
    QTRY_VERIFY(!QFile::exists(recibido()[2]));
    QCOMPARE(leerFichero(mia), QByteArray("importante"));
    // What the owner was told to be copied goes against that folder; what not, by its name.
    QCOMPARE(recibido()[3], u"/fotos"_s);
    QCOMPARE(leerFichero(QDir::homePath() + u"/lista-2"_s), rutas[1].toUtf8() + '\n');
    QCOMPARE(tarea.detalle(), detalle);
    QCOMPARE(dicho, resumen);
}

void PruebaAvisosDeFotos::recuperar_data()
{
    QTest::addColumn<QByteArray>("fin");
    QTest::addColumn<QString>("detalle");
    QTest::addColumn<QString>("linea");
    const auto donde = u".\n\nEstán en «Fotos recuperadas», con las mismas carpetas que tenían en el iPhone."_s;
    QTest::newRow("some") << QByteArray(R"({"tipo":"fin","recuperadas":3,"saltadas":0,"bytes":4000000})")
                          << u"3 fotos recuperadas · 4 MB"_s
                          << u"He sacado 3 fotos y vídeos de la copia (4 MB)"_s + donde;
    QTest::newRow("all there already") << QByteArray(R"({"tipo":"fin","recuperadas":0,"saltadas":5,"bytes":0})")
                                       << u"0 fotos recuperadas · 0 MB"_s
                                       << u"He sacado 0 fotos y vídeos de la copia (0 MB), 5 ya estaban"_s + donde;
    QTest::newRow("none in it") << QByteArray(R"({"tipo":"fin"})") << u"Esta copia no traía el carrete"_s
                                << u"Esta copia de seguridad no incluye las fotos."_s;
}

void PruebaAvisosDeFotos::recuperar()
{
    QFETCH(const QByteArray, fin);
    QFETCH(const QString, detalle);
    QFETCH(const QString, linea);
    const auto copias = QDir::homePath() + u"/copias"_s;
    QVERIFY(QDir(copias).removeRecursively());
    // Without a backup no engine runs.
    recuperarCarrete(tarea, u"U"_s, copias, u"/destino"_s);
    QVERIFY(!tarea.enMarcha() && tarea.terminadaBien() == false && !QFile::exists(QDir::homePath() + u"/recibido"_s));
    QCOMPARE(tarea.detalle(), u"No hay copia de seguridad"_s);
    QCOMPARE(tarea.registro(), QStringList{u"No hay ninguna copia de seguridad de la que sacarlas."_s});

    QVERIFY(escribirFichero(copias + u"/U/Manifest.db"_s, "x"));
    dira({R"({"tipo":"total","n":3})", fin});
    recuperarCarrete(tarea, u"U"_s, copias, u"/destino"_s);
    QVERIFY(acaba());
    QCOMPARE(recibido(), (QStringList{u"recuperar-carrete"_s, u"U"_s, copias, u"/destino"_s, u"CONFIRMADO="_s}));
    QCOMPARE(tarea.detalle(), detalle);
    QCOMPARE(tarea.registro(), (QStringList{u"La copia trae 3 fotos y vídeos."_s, linea}));
    QCOMPARE(tarea.carpetaResultado(), u"/destino"_s);
}

void PruebaAvisosDeFotos::lista()
{
    // In two notices; the second has an item without a state, and one with nothing at all.
    dira(
        {R"({"tipo":"carrete","lista":[{"ruta":"/DCIM/a","bytes":5,"copiado":true,"estado":"oculta","elemento":"e"}]})",
         R"({"tipo":"carrete","lista":[{"ruta":"/DCIM/b"},{}]})"});
    QList<FotoDelCarrete> fotos;
    listarCarrete(tarea, u"U"_s, u"/fotos"_s, [&](const CarreteListado &leido) { fotos = leido.fotos; });
    QVERIFY(acaba());
    QCOMPARE(fotos.size(), 3);
    QVERIFY(fotos[0].copiado && fotos[0].estado == u"oculta" && fotos[0].bytes == 5);
    QCOMPARE(fotos[1].estado, u"visible"_s);
    QCOMPARE(tarea.detalle(), u"3 archivos en el carrete"_s);
    // A list that was cut off is none.
    fotos.clear();
    dira({R"({"tipo":"carrete","lista":[{"ruta":"/DCIM/a"}]})"}, 1);
    listarCarrete(tarea, u"U"_s, u"/fotos"_s, [&](const CarreteListado &leido) { fotos = leido.fotos; });
    QVERIFY(acaba() && fotos.isEmpty());
}

void PruebaAvisosDeFotos::grupos()
{
    const auto foto = [](const QString &nombre, const QString &tipo, const QString &elemento, bool copiado = true) {
        return FotoDelCarrete{u"/DCIM/"_s + nombre, {}, nombre, 10, 0, tipo, elemento, copiado, u"visible"_s};
    };
    const auto elementos = agrupar({foto(u"1.AAE"_s, u"ajustes"_s, u"1"_s), foto(u"1.HEIC"_s, u"foto"_s, u"1"_s),
                                    foto(u"1.MOV"_s, u"video"_s, u"1"_s, false), foto(u"2.MOV"_s, u"video"_s, u"2"_s),
                                    foto(u"E1.JPG"_s, u"retoque"_s, u"1"_s)});
    QCOMPARE(elementos.size(), 2);
    QCOMPARE(elementos[0].principal.nombre, u"E1.JPG"_s);
    QVERIFY(elementos[0].esVivo() && elementos[0].retocada() && !elementos[0].copiado() && !elementos[0].esVideo());
    QCOMPARE(elementos[0].rutas().size(), 4);
    QCOMPARE(elementos[0].bytes(), qint64(40));
    QVERIFY(elementos[1].esVideo() && !elementos[1].esVivo() && elementos[1].copiado());
}

void PruebaAvisosDeFotos::carpeta()
{
    Modelo modelo;
    QVERIFY(asentado(modelo));
    Cerradura cerradura;
    Consentimiento consentimiento(modelo, cerradura);
    Fotos fotos(modelo, consentimiento);
    const auto deSiempre = modelo.carpetaBase() + u"/Fotos"_s;
    QVERIFY(fotos.carpeta() == deSiempre && fotos.carpetaEsLaDeSiempre());
    const auto otra = QDir::homePath() + u"/disco/Fotos"_s;
    QVERIFY(QDir().mkpath(otra));
    fotos.ponCarpeta(otra);
    QVERIFY(fotos.carpeta() == otra && !fotos.carpetaEsLaDeSiempre());
    // The disk is unplugged: back to the usual one, and the choice stays.
    QVERIFY(QDir(otra).removeRecursively());
    QVERIFY(fotos.carpeta() == deSiempre && !fotos.carpetaEsLaDeSiempre());
    fotos.volverACarpetaPorDefecto();
    QVERIFY(fotos.carpetaEsLaDeSiempre());
    // Without a phone nothing starts.
    fotos.copiar();
    fotos.prepararLiberacion();
    QVERIFY(!modelo.tarea().enMarcha());
}

void PruebaAvisosDeFotos::pocoSitio_data()
{
    QTest::addColumn<qint64>("libres");
    QTest::addColumn<bool>("avisa");
    QTest::newRow("just enough") << qint64(5'000'000'000) << false;
    QTest::newRow("a byte less") << qint64(4'999'999'999) << true;
    QTest::newRow("unknown") << qint64(-1) << false;
}

void PruebaAvisosDeFotos::pocoSitio()
{
    QFETCH(const qint64, libres);
    QFETCH(const bool, avisa);
    Modelo modelo;
    QVERIFY(asentado(modelo));
    Cerradura cerradura;
    Consentimiento consentimiento(modelo, cerradura);
    const Fotos fotos(modelo, consentimiento);
    Dispositivo telefono;
    telefono.id = u"U"_s;
    telefono.libresBytes = libres < 0 ? std::nullopt : std::optional(libres);
    modelo.aplicar({telefono}, {});
    QCOMPARE(!fotos.pocoSitio().isEmpty(), avisa);
}

void PruebaAvisosDeFotos::elFinTardioNoCierraElTrabajoSiguiente()
{
    using Lanzar = std::function<void(Tarea &)>;
    const QString u = u"U"_s;
    const QString carpetaFotos = QDir::homePath() + u"/Fotos"_s;
    const auto nada = [](const auto &...) {
    };
    const QList<Lanzar> operaciones{
        [&](Tarea &t) { liberarEspacio(t, u, carpetaFotos); },
        [&](Tarea &t) { planDeLiberacion(t, u, carpetaFotos, nada); },
        [&](Tarea &t) { borrarTodasLasFotos(t, u, carpetaFotos); },
        [&](Tarea &t) { borrarBibliotecaDeFotos(t, u, carpetaFotos, nada); },
        [&](Tarea &t) {
            borrarElegidas(t, u, {{u"/DCIM/a"_s}, {}, carpetaFotos}, nada);
        },
        [&](Tarea &t) { listarCarrete(t, u, carpetaFotos, nada); },
        [&](Tarea &t) { copiarFotosRapido(t, u, carpetaFotos); },
    };
    const auto terco = QDir::homePath() + u"/terco"_s;
    for (const auto &lanzar : operaciones) {
        dira({R"({"tipo":"total","n":3})"});
        QVERIFY(escribirFichero(terco, "1"));
        lanzar(tarea);
        QTRY_VERIFY(!recibido().isEmpty()); // the engine is up and deaf to requests to end
        tarea.cancelar();
        tarea.empezar(u"Otra"_s, u"Paso"_s);
        QVERIFY(QFile::remove(terco)); // now it ends, well
        QTRY_VERIFY(!tarea.ejecutorMotor.enMarcha());
        QVERIFY(tarea.enMarcha());
        QCOMPARE(tarea.detalle(), u"Paso"_s);
        tarea.cerrar(true);
        init();
    }
}

/// Small pictures of photos that are gone go too; of another phone's only the oldest, for room.
void PruebaAvisosDeFotos::miniaturasDeMas()
{
    FotoDelCarrete esta;
    esta.ruta = u"/DCIM/100APPLE/IMG_0001.HEIC"_s;
    const auto suya = Galeria::carpetaDe(u"U"_s) + u'/' + nombreDeMiniatura(u"U"_s, esta.ruta, esta.bytes, esta.fecha);
    const auto ida = Galeria::carpetaDe(u"U"_s) + u"/de-una-que-ya-no-esta.jpg"_s;
    const auto deOtro = Galeria::carpetaDe(u"OTRO"_s) + u"/x.jpg"_s;
    for (const auto &nombre : {suya, ida, deOtro})
        QVERIFY(escribirFichero(nombre, QByteArray(1000, 'x')));
    QFile vieja(deOtro);
    QVERIFY(vieja.open(QIODevice::ReadWrite) &&
            vieja.setFileTime(QDateTime::currentDateTime().addDays(-2), QFile::FileModificationTime));
    vieja.close();
    Galeria::podar(u"U"_s, {esta});
    QVERIFY(QFile::exists(suya) && !QFile::exists(ida) && QFile::exists(deOtro));
    Galeria::podar(u"U"_s, {esta}, 1500);
    QVERIFY(QFile::exists(suya) && !QFile::exists(deOtro));
}

/// The owner's stop waits for the engine's last word: so many went, so many stay, in the strip and in the journal.
void PruebaAvisosDeFotos::borradoQueSeCancela()
{
    dira({R"({"tipo":"plan","a_borrar":9})", R"({"tipo":"progreso","hechos":4})"});
    const auto terco = QDir::homePath() + u"/terco"_s;
    QVERIFY(escribirFichero(terco, "1"));
    liberarEspacio(tarea, u"U"_s, u"/fotos"_s);
    QTRY_COMPARE(tarea.hechos(), qint64(4));
    tarea.cancelar();
    QVERIFY(tarea.enMarcha() && tarea.cancelada());
    QVERIFY(QFile::remove(terco));
    QVERIFY(acaba());
    QCOMPARE(tarea.detalle(),
             u"Borrado a medias: 4 archivos fuera, quedan 5 archivos en el iPhone. REINICIA EL IPHONE."_s);
    QCOMPARE(diario.lista().first().detalle, tarea.detalle());
    QVERIFY(diario.lista().first().detalle.contains(u"REINICIA EL IPHONE"));
}

QTEST_GUILESS_MAIN(PruebaAvisosDeFotos)
#include "PruebaAvisosDeFotos.moc"
