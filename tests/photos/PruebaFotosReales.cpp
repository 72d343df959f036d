#include "backups/Comprobante.h"
#include "images/ImagenReducida.h"
#include "photos/CopiarFotos.h"
#include "photos/Galeria.h"
#include "photos/SeleccionFotos.h"
#include "platform/Llavero.h"
#include "support/BaseDePrueba.h"
#include "support/BusPrivado.h"
#include "support/CopiaDePrueba.h"
#include "support/LlaveroPrivado.h"
#include "support/TelefonoSimulado.h"
#include "ui/sesion/Programa.h"

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// The phone's photos through the program and the true engine on the simulated phone, without a window.
class PruebaFotosReales : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void copiarYLiberar();
    void copiarPorCarpetas();
    void elegirYBorrar();
    void borradoQueSePara();
    void otroTelefono();
    void biblioteca();
    void laComprobacionNiega();
    void recuperarDeUnaCopiaCifrada();
    void miniaturas();
    void porOrdenes();

private:
    bool acaba()
    {
        return QTest::qWaitFor([this] { return !programa->modelo.tarea().enMarcha(); }, 60'000);
    }
    QMap<QString, QByteArray> enElTelefono() const { return CopiaDePrueba::contenido(media + u"/DCIM"_s); }
    /// The owner answers the question that stands.
    bool leido() const
    {
        return QTest::qWaitFor([this] { return !programa->seleccion.cargando(); }, 30'000);
    }
    QVariant dato(int fila, SeleccionFotos::Papel papel) const
    {
        return programa->seleccion.data(programa->seleccion.index(fila), papel);
    }
    int filaDe(const QString &nombre) const
    {
        for (int fila = 0; fila < programa->seleccion.rowCount(); ++fila) {
            if (dato(fila, SeleccionFotos::PapelNombre) == nombre)
                return fila;
        }
        return -1;
    }

    std::unique_ptr<BusPrivado> bus;
    std::unique_ptr<TelefonoSimulado> telefono;
    std::unique_ptr<Programa> programa;
    QString media;
};

void PruebaFotosReales::initTestCase()
{
    bus = std::make_unique<BusPrivado>(); // with nobody on it to make sure of the owner
}

void PruebaFotosReales::init()
{
    QDir(QDir::homePath() + u"/Vellora"_s).removeRecursively();
    telefono = std::make_unique<TelefonoSimulado>();
    QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
    media = telefono->contenido(telefono->udid()) + u"/media"_s;
    programa = std::make_unique<Programa>([](const QString &) { return Llavero::Estado::Hallada; });
    QTRY_VERIFY_WITH_TIMEOUT(programa->modelo.seleccionado(), 20'000);
    programa->modelo.marcarConocido(telefono->udid());
}

void PruebaFotosReales::cleanup()
{
    programa.reset();
    telefono.reset();
}

void PruebaFotosReales::copiarYLiberar()
{
    auto &fotos = programa->fotos;
    const auto todo = enElTelefono();
    fotos.prepararLiberacion();
    QVERIFY(acaba());
    QVERIFY(programa->consentimiento.aviso().startsWith(u"No hay nada que borrar sin riesgo."));
    auto &consentimiento = programa->consentimiento;
    QVERIFY(!consentimiento.abierto());
    consentimiento.cerrarAviso();

    fotos.copiar();
    QVERIFY(acaba());
    QCOMPARE(programa->modelo.tarea().terminadaBien(), true);
    QCOMPARE(programa->modelo.tarea().detalle(), u"%1 archivos nuevos copiados, 0 ya los tenías"_s.arg(todo.size()));
    QVERIFY(escribirFichero(media + u"/DCIM/109APPLE/IMG_9001.JPG"_s, "sin copiar"));

    fotos.prepararLiberacion();
    QVERIFY(acaba() && consentimiento.abierto());
    QVERIFY2(consentimiento.texto().startsWith(u"Se borrarán %1 archivos y recuperarás "_s.arg(todo.size())) &&
                 consentimiento.texto().endsWith(u"\n\nOtros 1 se quedan porque NO están copiados."),
             qPrintable(consentimiento.texto()));
    QVERIFY(consentimiento.aQuien().contains(telefono->udid().right(6)));
    consentimiento.responder(false);
    QVERIFY(!consentimiento.abierto());
    QCOMPARE(enElTelefono().size(), todo.size() + 1);

    fotos.prepararLiberacion();
    QVERIFY(acaba() && consentimiento.abierto());
    consentimiento.responder(true);
    QVERIFY(QTest::qWaitFor([this] { return programa->modelo.tarea().enMarcha(); }, 5000) && acaba());
    QCOMPARE(enElTelefono().keys(), QStringList{u"109APPLE/IMG_9001.JPG"_s});
    QCOMPARE(programa->modelo.tarea().registro().last(),
             u"REINICIA EL IPHONE: la app Fotos se reconstruirá con lo que queda."_s);
    auto copiado = CopiaDePrueba::contenido(fotos.carpeta());
    for (auto it = todo.cbegin(); it != todo.cend(); ++it)
        QCOMPARE(copiado[it.key()], it.value());
}

void PruebaFotosReales::copiarPorCarpetas()
{
    if (!QFile::exists(QStringLiteral(PYMOBILEDEVICE)))
        QSKIP("pymobiledevice3 is not at hand");
    const auto todo = enElTelefono();
    const auto destino = programa->fotos.carpeta();
    copiarFotos(programa->modelo.tarea(), telefono->udid(), destino);
    QCOMPARE(programa->modelo.tarea().titulo(), u"Copiando fotos y videos"_s);
    QVERIFY(acaba());
    QCOMPARE(programa->modelo.tarea().detalle(), u"%1 archivos copiados"_s.arg(todo.size()));
    QCOMPARE(CopiaDePrueba::contenido(destino), todo);
    // What it brought, without dates, the fast copy and the freeing recognise by its content.
    programa->fotos.copiar();
    QVERIFY(acaba());
    QCOMPARE(programa->modelo.tarea().detalle(), u"0 archivos nuevos copiados, %1 ya los tenías"_s.arg(todo.size()));
}

void PruebaFotosReales::elegirYBorrar()
{
    auto &seleccion = programa->seleccion;
    programa->fotos.copiar();
    QVERIFY(acaba());
    QVERIFY(escribirFichero(media + u"/DCIM/100APPLE/IMG_0900.JPG"_s, "sin copiar"));
    seleccion.abrir();
    QVERIFY(seleccion.abierta() && seleccion.cargando());
    QVERIFY(leido() && acaba());
    const auto elementos = seleccion.rowCount();
    QVERIFY(elementos > 8 && elementos < enElTelefono().size());
    const auto viva = filaDe(u"IMG_0003.JPG"_s);
    QVERIFY(viva >= 0 && filaDe(u"IMG_0003.MOV"_s) < 0);
    QVERIFY(dato(viva, SeleccionFotos::PapelVivo).toBool() && dato(viva, SeleccionFotos::PapelCopiado).toBool());
    QCOMPARE(dato(filaDe(u"IMG_0004.JPG"_s), SeleccionFotos::PapelEstado), u"oculta"_s);

    const auto filtrado = [&](const QString &filtro) {
        seleccion.ponFiltro(filtro);
        QTest::qWait(200);
        return seleccion.rowCount();
    };
    QCOMPARE(filtrado(u"papelera"_s), 1);
    QCOMPARE(filtrado(u"sincopiar"_s), 1);
    QCOMPARE(filtrado(u"copiadas"_s), elementos - 1);
    QVERIFY(filtrado(u"retocadas"_s) > 0);
    QCOMPARE(filtrado(u"fotos"_s) + filtrado(u"videos"_s) + filtrado(u"papelera"_s), elementos);
    QCOMPARE(filtrado({}), elementos);
    seleccion.ponBusqueda(u"img_0003"_s);
    QTRY_COMPARE(seleccion.rowCount(), 1);
    seleccion.ponBusqueda({});
    QTRY_COMPARE(seleccion.rowCount(), elementos);
    seleccion.ponOrden(u"peso"_s);
    QTest::qWait(200);
    QVERIFY(seleccion.elemento(0)->bytes() >= seleccion.elemento(1)->bytes());

    seleccion.marcar(filaDe(u"IMG_0003.JPG"_s));
    seleccion.marcar(filaDe(u"IMG_0900.JPG"_s));
    QCOMPARE(seleccion.cuantosMarcados(), 2);
    QCOMPARE(seleccion.sinCopiarMarcados(), 1);
    QCOMPARE(seleccion.rutasMarcadas().size(), 3); // a mark takes both halves
    auto &consentimiento = programa->consentimiento;
    seleccion.pedirBorrar();
    QVERIFY(consentimiento.abierto() && consentimiento.texto().contains(u"1 NO está copiada"));
    const auto antes = enElTelefono().size();
    consentimiento.responder(false);
    QCOMPARE(enElTelefono().size(), antes);
    seleccion.pedirBorrar();
    consentimiento.responder(true);
    QTRY_VERIFY_WITH_TIMEOUT(!consentimiento.aviso().isEmpty(), 30'000);
    QVERIFY(consentimiento.aviso().startsWith(u"Listo. He borrado lo que marcaste"));
    QCOMPARE(enElTelefono().size(), antes - 3);
    // The list follows by itself.
    QTRY_COMPARE_WITH_TIMEOUT(seleccion.rowCount(), elementos - 2, 30'000);
    QCOMPARE(seleccion.cuantosMarcados(), 0);
    QVERIFY(acaba());
}

/// Stopped half-way: what went and what stays is told, and still told when the roll has been read again.
void PruebaFotosReales::borradoQueSePara()
{
    auto &seleccion = programa->seleccion;
    auto &tarea = programa->modelo.tarea();
    auto &consentimiento = programa->consentimiento;
    seleccion.abrir();
    QVERIFY(leido() && acaba());
    QTRY_VERIFY(seleccion.rowCount() > 8);
    seleccion.marcarTodas();
    const auto antes = enElTelefono().size();
    seleccion.pedirBorrar();
    const auto lento = [this](int ms) {
        return telefono
            ->orden({{u"orden"_s, u"pausa"_s},
                     {u"servicio"_s, u"com.apple.afc"_s},
                     {u"ms"_s, ms},
                     {u"veces"_s, 0}})[u"bien"_s]
            .toBool();
    };
    QVERIFY(lento(60));
    consentimiento.responder(true);
    QTRY_VERIFY_WITH_TIMEOUT(tarea.hechos() > 1, 30'000);
    tarea.cancelar();
    QVERIFY(lento(0));
    QTRY_VERIFY_WITH_TIMEOUT(consentimiento.aviso().startsWith(u"Borrado a medias: "), 30'000);
    const auto quedan = enElTelefono().size();
    QVERIFY(quedan > 0 && quedan < antes);
    const auto frase = u"Borrado a medias: %1 archivos fuera, quedan %2 archivos en el iPhone. REINICIA EL IPHONE."_s
                           .arg(antes - quedan)
                           .arg(quedan);
    QVERIFY2(consentimiento.aviso().startsWith(frase), qPrintable(consentimiento.aviso()));
    QTRY_VERIFY_WITH_TIMEOUT(leido() && !tarea.enMarcha() && tarea.detalle() == frase, 30'000);
    QVERIFY(tarea.terminadaBien() == false);
    const auto &diario = programa->modelo.diario().lista();
    QVERIFY(std::any_of(diario.begin(), diario.end(), [&](const auto &una) { return una.detalle == frase; }));
}

void PruebaFotosReales::otroTelefono()
{
    auto &seleccion = programa->seleccion;
    seleccion.abrir();
    QVERIFY(leido() && acaba());
    QTRY_VERIFY(seleccion.rowCount() > 0);
    QVERIFY(telefono->orden(u"desconectar"_s));
    programa->modelo.refrescar(false);
    QTRY_VERIFY_WITH_TIMEOUT(!seleccion.abierta(), 20'000);
    QCOMPARE(seleccion.rowCount(), 0);
}

void PruebaFotosReales::biblioteca()
{
    // Locked as long as there is no backup.
    auto &consentimiento = programa->consentimiento;
    programa->pedirBorrarTodas();
    QVERIFY(!consentimiento.abierto());
    QVERIFY(consentimiento.aviso().startsWith(u"No te dejo borrar sin una copia."));
    consentimiento.cerrarAviso();
    // Locked too by one that lacks a photo.
    const auto copia = programa->modelo.carpetaCopias() + u'/' + telefono->udid();
    QVERIFY(CopiaDePrueba::copiarTelefono(telefono->contenido(telefono->udid()), copia));
    QCOMPARE(Comprobante::comprobarYApuntar(copia).veredicto, ComprobacionDeCopia::Veredicto::Entera);
    const auto nueva = media + u"/DCIM/100APPLE/IMG_0900.JPG"_s;
    QVERIFY(escribirFichero(nueva, "de después de la copia"));
    programa->pedirBorrarTodas();
    QVERIFY(acaba() && !consentimiento.abierto());
    QVERIFY2(consentimiento.aviso().contains(u"A la copia de seguridad le faltan 1 archivos"),
             qPrintable(consentimiento.aviso()));
    consentimiento.cerrarAviso();
    QVERIFY(QFile::remove(nueva));
    programa->pedirBorrarTodas();
    QVERIFY(acaba() && consentimiento.abierto());
    QVERIFY2(consentimiento.texto().contains(u"Tienes copia de seguridad en el Mac") &&
                 consentimiento.texto().contains(u"Es la de «iPhone de Marta» del "),
             qPrintable(consentimiento.texto()));
    consentimiento.responder(true);
    QTRY_VERIFY_WITH_TIMEOUT(consentimiento.aviso().startsWith(u"Listo: "), 30'000);
    QVERIFY(acaba() && enElTelefono().isEmpty());
    QVERIFY(!consentimiento.aviso().contains(u"Tus 0 fotos"));
}

/// Somebody who is not the owner, or closes the system's question, deletes nothing, whatever they press before.
void PruebaFotosReales::laComprobacionNiega()
{
    if (!BusPrivado::esElDelSistema())
        QSKIP("run by fotos_que_nadie_confirma");
    const auto nombre = u"org.freedesktop.PolicyKit1"_s;
    const auto objeto = u"/org/freedesktop/PolicyKit1/Authority"_s;
    const auto interfaz = u"org.freedesktop.PolicyKit1.Authority"_s;
    QVERIFY(bus->servir(nombre, {u"--system"_s, nombre, objeto, interfaz}));
    // It would ask, and the answer is no.
    QVERIFY(bus->metodo(
        nombre, objeto, interfaz,
        {u"CheckAuthorization"_s, u"(sa{sv})sa{ss}us"_s, u"(bba{ss})"_s, u"ret = (False, args[3] == 0, {})"_s}));
    programa->fotos.copiar();
    QVERIFY(acaba());
    const auto copia = programa->modelo.carpetaCopias() + u'/' + telefono->udid();
    QVERIFY(CopiaDePrueba::copiarTelefono(telefono->contenido(telefono->udid()), copia));
    QCOMPARE(Comprobante::comprobarYApuntar(copia).veredicto, ComprobacionDeCopia::Veredicto::Entera);
    auto &seleccion = programa->seleccion;
    seleccion.abrir();
    QVERIFY(leido() && acaba());
    QTRY_VERIFY(seleccion.rowCount() > 0);
    seleccion.marcarTodas();
    const auto todo = enElTelefono();
    programa->fotos.prepararLiberacion();
    QVERIFY(acaba() && programa->consentimiento.abierto());
    programa->consentimiento.responder(true);
    programa->pedirBorrarTodas();
    QVERIFY2(acaba() && programa->consentimiento.abierto(), qPrintable(programa->consentimiento.aviso()));
    const auto trasElPlan = programa->modelo.diario().lista().size();
    programa->consentimiento.responder(true);
    seleccion.pedirBorrar();
    programa->consentimiento.responder(true);
    QTRY_VERIFY(bus->peticiones().contains(u"es.vellora.borrar-fotos"));
    for (const auto &accion : {u"es.vellora.borrar-copiadas"_s, u"es.vellora.borrar-todas-las-fotos"_s})
        QVERIFY(bus->peticiones().contains(accion));
    QTest::qWait(500);
    QCOMPARE(enElTelefono(), todo);
    QCOMPARE(programa->modelo.diario().lista().size(), trasElPlan);
    bus->retirar();
}

void PruebaFotosReales::recuperarDeUnaCopiaCifrada()
{
    const LlaveroPrivado llavero;
    QVERIFY(llavero.listo());
    programa->recuperarFotos();
    QCOMPARE(programa->modelo.tarea().detalle(), u"No hay copia de seguridad"_s);
    CopiaDePrueba casa;
    QVERIFY(casa.crearTelefono());
    const auto clave = u"la clave"_s;
    QVERIFY(casa.copiar(u"copia"_s, clave));
    QVERIFY(QDir().mkpath(programa->modelo.carpetaCopias()));
    QVERIFY(QFile::rename(casa.ruta(u"copia"_s), programa->modelo.carpetaCopias() + u'/' + telefono->udid()));
    QVERIFY(Llavero::guardar(clave, telefono->udid()));
    programa->recuperarFotos();
    QVERIFY(acaba());
    QVERIFY2(programa->modelo.tarea().terminadaBien() == true,
             qPrintable(programa->modelo.tarea().registro().join(u'\n')));
    auto recuperadas = CopiaDePrueba::contenido(programa->modelo.carpetaBase() + u"/Fotos recuperadas"_s);
    QVERIFY(recuperadas.remove(u".vellora-cerrojo"_s) == 1);
    QCOMPARE(recuperadas, CopiaDePrueba::contenido(casa.telefono() + u"/media/DCIM"_s));
    QCOMPARE(programa->modelo.carpetaFotosParaIA(), programa->modelo.carpetaBase() + u"/Fotos recuperadas"_s);
}

void PruebaFotosReales::miniaturas()
{
    // A HEIC picture, a video, one that the phone has a picture of, and one that is no picture.
    const auto carrete = media + u"/DCIM/100APPLE/"_s;
    QImage azul(800, 600, QImage::Format_RGB32);
    azul.fill(Qt::blue);
    QVERIFY(azul.save(carrete + u"a.png"_s));
    QCOMPARE(QProcess::execute(u"heif-enc"_s, {carrete + u"a.png"_s, u"-o"_s, carrete + u"IMG_0500.HEIC"_s}), 0);
    QCOMPARE(QProcess::execute(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-f"_s, u"lavfi"_s, u"-i"_s,
                                             u"color=red:s=640x360:d=1"_s, carrete + u"IMG_0501.MOV"_s}),
             0);
    QVERIFY(QFile::remove(carrete + u"a.png"_s));
    QVERIFY(escribirFichero(carrete + u"IMG_0502.JPG"_s, "esto no es una foto"));
    QImage verde(240, 180, QImage::Format_RGB32);
    verde.fill(Qt::green);
    QVERIFY(QDir().mkpath(media + u"/PhotoData/Thumbnails/V2/DCIM/100APPLE/IMG_0502.JPG"_s));
    QVERIFY(verde.save(media + u"/PhotoData/Thumbnails/V2/DCIM/100APPLE/IMG_0502.JPG/5003.JPG"_s));
    QVERIFY(escribirFichero(carrete + u"IMG_0503.JPG"_s, "esto tampoco"));

    auto &seleccion = programa->seleccion;
    seleccion.abrir();
    QVERIFY(leido() && acaba());
    const auto color = [&](const QString &nombre) {
        const auto fila = filaDe(nombre);
        dato(fila, SeleccionFotos::PapelMiniatura);
        if (!QTest::qWaitFor([&] { return !dato(fila, SeleccionFotos::PapelMiniatura).toUrl().isEmpty(); }, 20'000))
            return QColor();
        const auto url = dato(fila, SeleccionFotos::PapelMiniatura).toString();
        const auto fichero = QUrl::fromPercentEncoding(url.section(u"/celda/"_s, 1).toUtf8());
        const QImage imagen(fichero);
        return imagen.isNull() ? QColor() : imagen.pixelColor(imagen.width() / 2, imagen.height() / 2);
    };
    QVERIFY(filaDe(u"IMG_0500.HEIC"_s) >= 0);
    QVERIFY(color(u"IMG_0500.HEIC"_s).blue() > 200);
    QVERIFY(color(u"IMG_0501.MOV"_s).red() > 200);
    QVERIFY(color(u"IMG_0502.JPG"_s).green() > 200);
    const auto mala = filaDe(u"IMG_0503.JPG"_s);
    QTest::qWait(1500);
    QVERIFY(dato(mala, SeleccionFotos::PapelMiniatura).toUrl().isEmpty());
    // They stay: another day nothing is asked of the phone.
    const auto suCarpeta = Galeria::carpetaDe(telefono->udid());
    const auto guardadas = QDir(suCarpeta).entryList(QDir::Files);
    QVERIFY(guardadas.size() >= 3);
    for (const auto &una : guardadas)
        QVERIFY(std::max(QImage(suCarpeta + u'/' + una).width(), 1) <= ladoDeMiniatura);
    const auto sinPedir = seleccion.elemento(filaDe(u"IMG_0002.JPG"_s))->principal;
    QVERIFY(telefono->orden(u"desconectar"_s));
    Galeria otroDia;
    otroDia.preparar(telefono->udid(), programa->fotos.carpeta());
    QVERIFY(!otroDia.miniatura(seleccion.elemento(filaDe(u"IMG_0500.HEIC"_s))->principal).isEmpty());
    // What could not be made without the phone is made once it is back.
    QVERIFY(otroDia.miniatura(sinPedir).isEmpty());
    QTRY_VERIFY(otroDia.preparando());
    QTRY_VERIFY_WITH_TIMEOUT(!otroDia.preparando(), 20'000);
    QVERIFY(otroDia.falta(sinPedir));
    QVERIFY(telefono->orden(u"conectar"_s));
    QTRY_VERIFY_WITH_TIMEOUT(!otroDia.miniatura(sinPedir).isEmpty(), 20'000);
    QVERIFY(imagenReducida(u"/no/está"_s, 100).isNull());
}

void PruebaFotosReales::porOrdenes()
{
    programa.reset(); // one program at a time
    const auto todo = enElTelefono();
    const auto carpeta = QDir::homePath() + u"/Por órdenes"_s;
    auto hecho = ejecutar(QStringLiteral(VELLORA), {u"fotos"_s, u"copiar"_s, u"--a"_s, carpeta});
    QVERIFY2(hecho.codigo == 0, hecho.palabras);
    QCOMPARE(QString::fromUtf8(hecho.salida).trimmed(), carpeta);
    QVERIFY(escribirFichero(media + u"/DCIM/109APPLE/IMG_9001.JPG"_s, "sin copiar"));
    hecho = ejecutar(QStringLiteral(VELLORA), {u"fotos"_s, u"plan"_s, u"--a"_s, carpeta, u"--json"_s});
    QCOMPARE(QJsonDocument::fromJson(hecho.salida).object()[u"archivos"_s].toInt(), todo.size());
    QCOMPARE(QJsonDocument::fromJson(hecho.salida).object()[u"sin_copiar"_s].toInt(), 1);
    hecho = ejecutar(QStringLiteral(VELLORA), {u"fotos"_s, u"listar"_s, u"--a"_s, carpeta, u"--json"_s});
    QCOMPARE(QJsonDocument::fromJson(hecho.salida).array().size(), todo.size() + 1);
    hecho = ejecutar(QStringLiteral(VELLORA), {u"fotos"_s, u"listar"_s, u"--a"_s, carpeta});
    QCOMPARE(hecho.salida.count('\n'), todo.size() + 1);
    QCOMPARE(enElTelefono().size(), todo.size() + 1);
    QCOMPARE(ejecutar(QStringLiteral(VELLORA), {u"fotos"_s}).codigo, 2);
    QCOMPARE(ejecutar(QStringLiteral(VELLORA), {u"fotos"_s, u"borrar"_s}).codigo, 2);
    QVERIFY(telefono->orden(u"desconectar"_s));
    QCOMPARE(ejecutar(QStringLiteral(VELLORA), {u"fotos"_s, u"copiar"_s, u"--a"_s, carpeta}).codigo, 1);
}

QTEST_MAIN(PruebaFotosReales)
#include "PruebaFotosReales.moc"
