#include "core/Preferencias.h"
#include "session/Migracion.h"
#include "session/Modelo.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

Dispositivo telefono(const QString &id, const QString &nombre)
{
    Dispositivo uno;
    uno.id = id;
    uno.nombre = nombre;
    uno.modeloCrudo = u"iPhone15,2"_s;
    uno.sistema = u"17.5.1"_s;
    uno.bateria = 80;
    uno.libresBytes = 10;
    uno.totalBytes = 100;
    return uno;
}

const auto ana = telefono(u"00008120-00000000000000AA"_s, u"Ana"_s);
const auto luis = telefono(u"00008120-00000000000000BB"_s, u"Luis"_s);
const auto eva = telefono(u"00008120-00000000000000DD"_s, u"Eva"_s);
const auto rosa = telefono(u"00008120-00000000000000CC"_s, u"Rosa"_s);

QString elegido(const Modelo &modelo)
{
    return modelo.seleccionado() ? modelo.seleccionado()->nombre : QString();
}

} // namespace

class PruebaModelo : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QDir(QDir::homePath() + u"/Vellora"_s).removeRecursively();
        Preferencias::ponLista(u"iPhonesConocidos"_s, {});
        modelo = std::make_unique<Modelo>();
        QSignalSpy primera(modelo.get(), &Modelo::refrescado);
        QVERIFY(modelo->buscando());
        QVERIFY(primera.wait(20000)); // no phone is reachable here
        QVERIFY(!modelo->buscando());
    }
    void loQueFallaNoBorraLoQueSeVe();
    void laEleccion();
    void elegirMientrasSeLee();
    void elTelefonoNuevo();
    void lasCarpetas_data();
    void lasCarpetas();
    void laCarpetaSinTelefono();
    void noCabe();
    void losCambiosDeLaTareaSeCuentan();
    void laMudanza();

private:
    /// As a refresh that began with what is selected now.
    void aplicar(const QList<Dispositivo> &leidos)
    {
        modelo->aplicar(leidos, modelo->seleccionado() ? std::optional(modelo->seleccionado()->id) : std::nullopt);
    }

    std::unique_ptr<Modelo> modelo;
};

void PruebaModelo::loQueFallaNoBorraLoQueSeVe()
{
    auto primero = ana;
    primero.cargando = true;
    aplicar({primero});
    auto pobre = ana;
    pobre.bateria.reset();
    pobre.totalBytes.reset();
    pobre.libresBytes = 5;
    pobre.modeloCrudo = u"desconocido"_s;
    pobre.sistema = u"—"_s;
    aplicar({pobre});
    const auto visto = modelo->seleccionado();
    QVERIFY(visto);
    QCOMPARE(visto->bateria, 80);
    QCOMPARE(visto->totalBytes, 100);
    QCOMPARE(visto->libresBytes, 5);
    QCOMPARE(visto->modelo(), u"iPhone 14 Pro"_s);
    QVERIFY(!visto->cargando);
    QCOMPARE(visto->sistema, u"—"_s);
    aplicar({});
    aplicar({pobre}); // after it left, nothing is remembered
    QVERIFY(!modelo->seleccionado()->bateria);
}

void PruebaModelo::laEleccion()
{
    aplicar({ana, luis});
    QCOMPARE(elegido(*modelo), u"Ana"_s);
    modelo->seleccionar(luis.id);
    aplicar({rosa, ana, luis});
    QCOMPARE(elegido(*modelo), u"Luis"_s);
    modelo->seleccionar(u"00008120-NOESTA"_s);
    QCOMPARE(elegido(*modelo), u"Luis"_s);
    aplicar({rosa, ana});
    QCOMPARE(elegido(*modelo), u"Rosa"_s);
    aplicar({});
    QVERIFY(!modelo->seleccionado());
    QVERIFY(modelo->dispositivos().isEmpty());
}

void PruebaModelo::elegirMientrasSeLee()
{
    aplicar({ana, luis});
    modelo->seleccionar(luis.id);
    modelo->aplicar({ana, luis}, std::nullopt); // the reading began before there was any
    QCOMPARE(elegido(*modelo), u"Luis"_s);
    modelo->aplicar({ana, luis}, ana.id); // and this one, while Ana was the selected one
    QCOMPARE(elegido(*modelo), u"Luis"_s);
    auto fresco = luis;
    fresco.bateria = 12;
    modelo->aplicar({ana, fresco}, ana.id);
    QCOMPARE(modelo->seleccionado()->bateria, 12);
    modelo->aplicar({rosa, ana}, ana.id); // the chosen one has left: back to the one before
    QCOMPARE(elegido(*modelo), u"Ana"_s);
}

void PruebaModelo::elTelefonoNuevo()
{
    aplicar({ana, luis});
    QCOMPARE(modelo->iPhoneNuevo()->nombre, u"Ana"_s);
    modelo->seleccionar(luis.id);
    aplicar({ana, luis});
    QCOMPARE(modelo->iPhoneNuevo()->nombre, u"Ana"_s);
    modelo->marcarConocido(ana.id);
    QVERIFY(!modelo->iPhoneNuevo());
    aplicar({ana, luis});
    QCOMPARE(modelo->iPhoneNuevo()->nombre, u"Luis"_s);
    modelo->marcarConocido(ana.id);
    QVERIFY(!modelo->iPhoneNuevo());
    QCOMPARE(Preferencias::lista(u"iPhonesConocidos"_s), QStringList{ana.id});
    modelo->marcarConocido(luis.id);
    QCOMPARE(Preferencias::lista(u"iPhonesConocidos"_s), (QStringList{ana.id, luis.id}));
    aplicar({ana, luis});
    QVERIFY(!modelo->iPhoneNuevo());
    // One that leaves before its welcome is answered makes room for the next.
    aplicar({rosa});
    QCOMPARE(modelo->iPhoneNuevo()->nombre, u"Rosa"_s);
    aplicar({});
    QVERIFY(!modelo->iPhoneNuevo());
    aplicar({eva});
    QCOMPARE(modelo->iPhoneNuevo()->nombre, u"Eva"_s);
}

void PruebaModelo::lasCarpetas_data()
{
    QTest::addColumn<QString>("nombre");
    QTest::addColumn<QString>("carpeta");
    QTest::newRow("plain") << u"iPhone de Marta"_s << u"iPhone de Marta"_s;
    QTest::newRow("slashes") << u"/Casa/Niño"_s << u"-Casa-Niño"_s;
    QTest::newRow("out of the folder") << u".."_s << u"iPhone"_s;
    QTest::newRow("the folder itself") << u"."_s << u"iPhone"_s;
    QTest::newRow("NUL") << QString(u"a\0b"_s) << u"ab"_s;
    QTest::newRow("longer than a file system takes") << QString(300, u'ñ') << QString(127, u'ñ');
    QTest::newRow("a character of four bytes is not cut")
        << u"abc"_s + u"😀"_s.repeated(63) + u"x"_s << u"abc"_s + u"😀"_s.repeated(63);
}

void PruebaModelo::lasCarpetas()
{
    QFETCH(QString, nombre);
    QFETCH(QString, carpeta);
    aplicar({telefono(ana.id, nombre)});
    QCOMPARE(modelo->carpetaBase(), QDir::homePath() + u"/Vellora/"_s + carpeta);
    QCOMPARE(modelo->carpetaCopias(), modelo->carpetaBase() + u"/Copias de seguridad"_s);
    QVERIFY(!QFile::exists(modelo->carpetaBase()));
}

/// Whose data is shown while no phone is here.
void PruebaModelo::laCarpetaSinTelefono()
{
    const auto raiz = QDir::homePath() + u"/Vellora"_s;
    const auto poner = [&](const QString &nombre) {
        const auto fichero = raiz + u'/' + nombre + u"/Mis datos/Notas.txt"_s;
        QFile escrito(fichero);
        return QDir().mkpath(QFileInfo(fichero).path()) && escrito.open(QIODevice::WriteOnly);
    };
    QCOMPARE(modelo->carpetaBase(), raiz + u"/iPhone"_s);
    QVERIFY(!QFile::exists(raiz + u"/iPhone"_s));
    // Hidden folders, folders that hold nothing and files tell of nobody.
    QVERIFY(poner(u".miniaturas"_s) && QDir().mkpath(raiz + u"/Ana/Mis datos"_s));
    QFile fichero(raiz + u"/Abel"_s);
    QVERIFY(fichero.open(QIODevice::WriteOnly));
    QCOMPARE(modelo->datosDe(), QString());
    // The only one that has data.
    QVERIFY(poner(u"Zoe"_s));
    QCOMPARE(modelo->carpetaBase(), raiz + u"/Zoe"_s);
    QCOMPARE(modelo->datosDe(), u"Zoe"_s);
    // Of several the owner chooses; until then nobody's data is shown.
    QVERIFY(poner(u"Luis"_s));
    QCOMPARE(modelo->datosDe(), QString());
    QCOMPARE(modelo->carpetasConDatos(), (QStringList{u"Luis"_s, u"Zoe"_s}));
    QVERIFY(!QFile::exists(modelo->carpetaDatos()));
    modelo->elegirDatosDe(u"Luis"_s);
    QCOMPARE(modelo->carpetaBase(), raiz + u"/Luis"_s);
    // The phone that was here last, while it has data.
    aplicar({telefono(ana.id, u"Zoe"_s)});
    QCOMPARE(modelo->datosDe(), QString());
    aplicar({});
    QCOMPARE(modelo->datosDe(), u"Zoe"_s);
    QVERIFY(QDir(raiz + u"/Zoe"_s).removeRecursively());
    QCOMPARE(modelo->datosDe(), u"Luis"_s);
}

void PruebaModelo::noCabe()
{
    QVERIFY(!sentenciaDeNoCabe(500, 2'000'000'500));
    QVERIFY(!sentenciaDeNoCabe(500, std::nullopt));
    QCOMPARE(sentenciaDeNoCabe(3'000'000'000, 4'999'999'999),
             u"No cabe. Hacen falta 3 GB y en el Mac quedan 5 GB. Libera sitio o elige otra carpeta."_s);
}

void PruebaModelo::losCambiosDeLaTareaSeCuentan()
{
    QSignalSpy cambios(modelo.get(), &Modelo::cambio);
    modelo->tarea().ponTitulo(u"x"_s);
    QVERIFY(!cambios.isEmpty());
}

void PruebaModelo::laMudanza()
{
    const QTemporaryDir carpeta;
    const QDir dir(carpeta.path());
    QVERIFY(dir.mkpath(u"viejo/dentro"_s));
    Migracion::mover(dir.filePath(u"viejo"_s), dir.filePath(u"nuevo"_s));
    QVERIFY(dir.exists(u"nuevo/dentro"_s) && !dir.exists(u"viejo"_s));
    QVERIFY(dir.mkpath(u"viejo/otro"_s));
    Migracion::mover(dir.filePath(u"viejo"_s), dir.filePath(u"nuevo"_s));
    QVERIFY(dir.exists(u"viejo/otro"_s) && !dir.exists(u"nuevo/otro"_s));

    // The journal of the former name is the journal of this one.
    modelo.reset();
    QDir(QDir::homePath() + u"/Vellora"_s).removeRecursively();
    QVERIFY(QDir().mkpath(QDir::homePath() + u"/Nodria"_s));
    {
        Diario antiguo(QDir::homePath() + u"/Nodria/actividad.json"_s);
        antiguo.terminar(antiguo.empezar(u"De antes"_s), true, u"bien"_s, {});
    }
    modelo = std::make_unique<Modelo>();
    QCOMPARE(modelo->diario().lista().first().titulo, u"De antes"_s);
    QVERIFY(!QFile::exists(QDir::homePath() + u"/Nodria"_s));
}

QTEST_GUILESS_MAIN(PruebaModelo)
#include "PruebaModelo.moc"
