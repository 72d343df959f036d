#include "core/CarpetaPrivada.h"
#include "core/Vuelta.h"
#include "extraction/Extraccion.h"
#include "support/BaseDePrueba.h"

#include <QDirIterator>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>
#include <thread>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

constexpr auto tablasDeMensajes =
    "CREATE TABLE handle (ROWID INTEGER PRIMARY KEY, id TEXT);"
    "CREATE TABLE message (ROWID INTEGER PRIMARY KEY, text TEXT, handle_id INTEGER, date INTEGER, "
    "is_from_me INTEGER);";
constexpr auto tablaDeNotas = "CREATE TABLE ZICCLOUDSYNCINGOBJECT (ZTITLE1, ZMODIFICATIONDATE1, ZSNIPPET);";

QByteArray nota(const char *titulo)
{
    return QByteArray(tablaDeNotas) + "INSERT INTO ZICCLOUDSYNCINGOBJECT VALUES ('" + titulo + "',700000000,'x')";
}

QStringList todosEn(const QString &carpeta)
{
    QStringList nombres;
    QDirIterator recorrido(carpeta, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (recorrido.hasNext())
        nombres << recorrido.next().mid(carpeta.size() + 1);
    nombres.sort();
    return nombres;
}

} // namespace

/// A second time into the same folder: what the owner has by then is worth more than what comes.
class PruebaLoDeAntes : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        casa = std::make_unique<QTemporaryDir>();
        desde = casa->filePath(u"desde"_s);
        a = casa->filePath(u"Mis datos"_s);
    }
    void chatsYMensajesQueYaNoEstan();
    void unaBaseDanada();
    void loQueNoSePudoEscribir();
    void mediosQueSeJuntan();
    void laBaseQueEs();
    void perfilesDeSafari();
    void unHiloRezagado();

private:
    QByteArray hecho(const QString &nombre) { return leerFichero(a + u'/' + nombre); }
    bool mensajes(const QByteArray &filas)
    {
        const auto base = desde + u"/HomeDomain/Library/SMS/sms.db"_s;
        QFile::remove(base);
        return escribirBase(base,
                            QByteArray(tablasDeMensajes) + "INSERT INTO handle VALUES (1,'Ana'),(2,'Luis');" + filas) &&
               Extraccion::mensajes(desde, a);
    }

    std::unique_ptr<QTemporaryDir> casa;
    QString desde;
    QString a;
};

void PruebaLoDeAntes::chatsYMensajesQueYaNoEstan()
{
    QVERIFY(mensajes("INSERT INTO message VALUES (1,'uno',1,60,0),(2,'dos\ntres',1,120,0),(3,'hola',2,60,1);"));
    const auto luis = hecho(u"Mensajes/Luis.txt"_s);
    // Something came at the end: nothing to keep.
    QVERIFY(mensajes("INSERT INTO message VALUES (1,'uno',1,60,0),(2,'dos\ntres',1,120,0),(4,'más',1,180,0);"));
    QCOMPARE(hecho(u"Mensajes/Luis.txt"_s), luis);
    QCOMPARE(todosEn(a), (QStringList{u"Mensajes/Ana.txt"_s, u"Mensajes/Luis.txt"_s}));
    // Two are gone, one after the other; each is kept once.
    QVERIFY(mensajes("INSERT INTO message VALUES (1,'uno',1,60,0),(4,'más',1,180,0);"));
    QVERIFY(mensajes("INSERT INTO message VALUES (4,'más',1,180,0);"));
    QVERIFY(mensajes("INSERT INTO message VALUES (4,'más',1,180,0);"));
    QCOMPARE(hecho(u"Mensajes/Ana.txt"_s), "[01/01/2001 01:03] Ana: más");
    QCOMPARE(hecho(u"Mensajes/Ana (de copias anteriores).txt"_s),
             "[01/01/2001 01:02] Ana: dos\n    tres\n[01/01/2001 01:01] Ana: uno");
    // How further lines used to be written does not make another message of them.
    QVERIFY(escribirFichero(a + u"/Mensajes/Luis.txt"_s, "[01/01/2001 01:01] Luis: dos\nlíneas"));
    QVERIFY(mensajes("INSERT INTO message VALUES (1,'dos\nlíneas',2,60,0);"));
    QVERIFY(!QFile::exists(a + u"/Mensajes/Luis (de copias anteriores).txt"_s));
}

void PruebaLoDeAntes::unaBaseDanada()
{
    QByteArray muchos;
    for (int i = 1; i <= 3000; ++i)
        muchos += "INSERT INTO message VALUES (" + QByteArray::number(i) + ",'" + QByteArray(90, 'x') + "',1," +
                  QByteArray::number(i * 60) + ",0);";
    QVERIFY(mensajes("BEGIN;" + muchos + "COMMIT;"));
    const auto antes = hecho(u"Mensajes/Ana.txt"_s);
    QVERIFY(antes.count('\n') > 2900);
    const auto base = desde + u"/HomeDomain/Library/SMS/sms.db"_s;
    auto bytes = leerFichero(base);
    bytes.replace(bytes.size() / 2 / 4096 * 4096, 4096, QByteArray(4096, '\xFF'));
    QVERIFY(escribirFichero(base, bytes));
    QVERIFY(escribirBase(desde + u"/AppDomainGroup-group.com.apple.notes/NoteStore.sqlite"_s, nota("una")));
    QVERIFY(escribirFichero(desde + u"/HealthDomain/Health/healthdb_secure.sqlite"_s, "esto no es una base"));
    Vuelta vuelta;
    const Vuelta::EnEsteHilo suya(vuelta);
    QVERIFY(!Extraccion::todo(desde, a).isEmpty());
    QCOMPARE(hecho(u"Mensajes/Ana.txt"_s), antes);
    const auto parte = hecho(u"Mensajes/Ana (a medias).txt"_s);
    QVERIFY(parte.count('\n') > 500 && parte.count('\n') < 2900);
    // Damaged is not absent; what is absent is not damaged.
    QCOMPARE(vuelta.incidencias().danadas, (QStringList{u"sms.db"_s, u"healthdb_secure.sqlite"_s}));
    QVERIFY(vuelta.incidencias().sinEscribir.isEmpty());
}

void PruebaLoDeAntes::loQueNoSePudoEscribir()
{
    QVERIFY(mensajes("INSERT INTO message VALUES (1,'corto',1,60,0),(2,'largo',2,60,0);"));
    const auto luis = hecho(u"Mensajes/Luis.txt"_s);
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit antes{};
    getrlimit(RLIMIT_FSIZE, &antes);
    QVERIFY(escribirBase(desde + u"/AppDomainGroup-group.com.apple.notes/NoteStore.sqlite"_s, nota("una")));
    const auto base = desde + u"/HomeDomain/Library/SMS/sms.db"_s;
    QFile::remove(base);
    QVERIFY(escribirBase(base, QByteArray(tablasDeMensajes) + "INSERT INTO handle VALUES (1,'Ana'),(2,'Luis');"
                                                              "INSERT INTO message VALUES (1,'corto',1,60,0),"
                                                              "(2,printf('%.100000c','y'),2,60,0)"));
    Vuelta vuelta;
    const Vuelta::EnEsteHilo suya(vuelta);
    const rlimit corto{50'000, antes.rlim_max};
    setrlimit(RLIMIT_FSIZE, &corto);
    const auto resumen = Extraccion::todo(desde, a);
    setrlimit(RLIMIT_FSIZE, &antes);
    QCOMPARE(resumen.size(), 2);
    QCOMPARE(vuelta.incidencias().sinEscribir, QStringList{u"Mensajes/Luis.txt"_s});
    QVERIFY(vuelta.incidencias().danadas.isEmpty());
    QCOMPARE(hecho(u"Mensajes/Luis.txt"_s), luis);
}

void PruebaLoDeAntes::mediosQueSeJuntan()
{
    const auto medios = desde + u"/WhatsApp/Media/1@s/"_s;
    const auto puestos = a + u"/WhatsApp/Fotos y audios/1@s/"_s;
    QVERIFY(escribirFichero(medios + u"foto.jpg"_s, "foto entera"));
    QVERIFY(escribirFichero(medios + u"video.mp4"_s, "un vídeo"));
    QVERIFY(escribirFichero(medios + u"nota.opus"_s, "nota"));
    QCOMPARE(Extraccion::whatsapp(desde, a), u"WhatsApp: 3 fotos, audios y vídeos"_s);
    QVERIFY(QDir(desde).removeRecursively());
    // The next backup lacks one, holds one cut short, a longer one, and another under a name that is taken.
    QVERIFY(escribirFichero(medios + u"foto.jpg"_s, "foto"));
    QVERIFY(escribirFichero(medios + u"video.mp4"_s, "un vídeo y su final"));
    QVERIFY(escribirFichero(medios + u"otro/nota.opus"_s, "nueva"));
    QVERIFY(escribirFichero(a + u"/WhatsApp/Fotos y audios/1@s/otro/nota.opus"_s, "vieja"));
    for (int vez = 0; vez < 2; ++vez) {
        QCOMPARE(Extraccion::whatsapp(desde, a), u"WhatsApp: 3 fotos, audios y vídeos"_s);
        QCOMPARE(leerFichero(puestos + u"foto.jpg"_s), "foto entera");
        QCOMPARE(leerFichero(puestos + u"video.mp4"_s), "un vídeo y su final");
        QCOMPARE(leerFichero(puestos + u"nota.opus"_s), "nota");
        QCOMPARE(leerFichero(puestos + u"otro/nota.opus"_s), "vieja");
        QCOMPARE(leerFichero(puestos + u"otro/nota (2).opus"_s), "nueva");
        QCOMPARE(todosEn(a).size(), 5);
    }
}

void PruebaLoDeAntes::laBaseQueEs()
{
    // Made in an order that some disks give back: a backup of the app's own first, empty, then full.
    QVERIFY(escribirFichero(desde + u"/AppDomainGroup-group.com.apple.notes/Backups/NoteStore.sqlite"_s, ""));
    QVERIFY(escribirBase(desde + u"/AppDomain-com.apple.otra/NoteStore.sqlite"_s, tablaDeNotas));
    QVERIFY(!Extraccion::notas(desde, a));
    QVERIFY(escribirBase(desde + u"/AppDomain-com.apple.zeta/NoteStore.sqlite"_s, nota("con filas")));
    QVERIFY(Extraccion::notas(desde, a));
    QVERIFY(hecho(u"Notas.txt"_s).contains("con filas"));
    QVERIFY(escribirBase(desde + u"/AppDomain-com.apple.a/NoteStore.sqlite"_s, nota("de otra")));
    QVERIFY(escribirBase(desde + u"/AppDomainGroup-group.com.apple.notes/NoteStore.sqlite"_s, nota("la suya")));
    QVERIFY(Extraccion::notas(desde, a));
    QVERIFY(hecho(u"Notas.txt"_s).contains("la suya"));
    const auto halladas = Extraccion::buscar(u"NoteStore.sqlite"_s, desde);
    QCOMPARE(halladas.size(), 4);
    QVERIFY(halladas[1].contains(u"apple.a"_s) && halladas[2].contains(u"zeta"_s) && halladas[3].contains(u"otra"_s));
}

void PruebaLoDeAntes::perfilesDeSafari()
{
    const auto safari = desde + u"/AppDomain-com.apple.mobilesafari/Library/Safari/"_s;
    const auto visitas = [](const QByteArray &filas) {
        return "CREATE TABLE history_items (id INTEGER PRIMARY KEY, url); CREATE TABLE history_visits (history_item, "
               "title, visit_time); INSERT INTO history_items VALUES (1,'https://x');"
               "INSERT INTO history_visits VALUES " +
               filas;
    };
    QVERIFY(escribirBase(safari + u"History.db"_s, visitas("(1,'tarde',700000120),(1,'pronto',700000000)")));
    QVERIFY(escribirBase(safari + u"Profiles/0A/History.db"_s, visitas("(1,'del perfil',700000060)")));
    QVERIFY(escribirBase(desde + u"/HomeDomain/Library/Safari/History.db"_s, visitas("(1,'pronto',700000000)")));
    QVERIFY(escribirBase(desde + u"/HomeDomain/Library/Otra/History.db"_s, visitas("(1,'de nadie',700000000)")));
    QCOMPARE(Extraccion::safari(desde, a), u"Safari: historial (3 visitas)"_s);
    const auto lineas = hecho(u"Safari - historial.csv"_s).split('\n');
    QCOMPARE(lineas.size(), 5);
    QVERIFY(lineas[1].contains("tarde") && lineas[2].contains("del perfil") && lineas[3].contains("pronto"));
}

/// A run is cancelled while its thread is in the midst of it: from that moment on nothing of it appears, so that what
/// the next run finds and writes is its own.
void PruebaLoDeAntes::unHiloRezagado()
{
    QByteArray filas("BEGIN;");
    for (int i = 1; i <= 400; ++i)
        filas += "INSERT INTO handle VALUES (" + QByteArray::number(i + 10) + ",'c" + QByteArray::number(i) +
                 "'); INSERT INTO message VALUES (" + QByteArray::number(i) + ",'hola'," + QByteArray::number(i + 10) +
                 ",60,0);";
    QVERIFY(escribirBase(desde + u"/HomeDomain/Library/SMS/sms.db"_s, QByteArray(tablasDeMensajes) + filas + "COMMIT"));
    QVERIFY(escribirBase(desde + u"/AppDomainGroup-group.com.apple.notes/NoteStore.sqlite"_s, nota("tardía")));
    Vuelta vuelta;
    std::thread rezagado([&] {
        const Vuelta::EnEsteHilo suya(vuelta);
        Extraccion::todo(desde, a);
    });
    while (!QFile::exists(a + u"/Mensajes/c1.txt"_s))
        std::this_thread::yield();
    vuelta.parar();
    QStringList alParar;
    for (const auto &nombre : todosEn(a)) {
        if (!nombre.contains(u".vellora-"_s))
            alParar << nombre;
    }
    rezagado.join();
    QCOMPARE(todosEn(a), alParar);
    QVERIFY2(alParar.size() < 401, "it had come to its end before it was stopped");
    QVERIFY(vuelta.incidencias().sinEscribir.isEmpty());
}

QTEST_GUILESS_MAIN(PruebaLoDeAntes)
#include "PruebaLoDeAntes.moc"
