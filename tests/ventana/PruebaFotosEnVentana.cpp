#include "backups/Comprobante.h"
#include "platform/Apariencia.h"
#include "support/BaseDePrueba.h"
#include "support/CopiaDePrueba.h"
#include "support/TelefonoSimulado.h"
#include "ui/Interfaz.h"
#include "ui/sesion/Programa.h"
#include "ventana/Manos.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QPushButton>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// The phone's photos in the true window, by keyboard and by the names of things, with the true engine behind.
class PruebaFotosEnVentana : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void carpeta();
    void liberar();
    void borrarTodas();
    void elegirPorTeclado();
    void carreteVacio();
    void cabeYTieneNombre_data();
    void cabeYTieneNombre();

private:
    void tecla(Qt::Key cual, Qt::KeyboardModifiers con = {}) const { QTest::keyClick(ventana, cual, con); }
    bool seLee(const QString &texto) const
    {
        return QTest::qWaitFor([&] { return Manos::seLee(*ventana, texto); }, 15'000);
    }
    bool pulsa(const QString &nombre) const
    {
        return QTest::qWaitFor([&] { return Manos::pulsar(*ventana, nombre); }, 5000);
    }
    bool acaba() const
    {
        return QTest::qWaitFor([this] { return !programa->modelo.tarea().enMarcha(); }, 30'000);
    }
    QString carrete() const { return telefono->contenido(telefono->udid()) + u"/media/DCIM"_s; }
    int enElTelefono() const { return static_cast<int>(arbol(carrete()).size()); }
    static void bajar(QQuickItem *item, QList<QQuickItem *> &todos)
    {
        todos << item;
        for (auto *hijo : item->childItems())
            bajar(hijo, todos);
    }

    std::unique_ptr<TelefonoSimulado> telefono;
    std::unique_ptr<Apariencia> apariencia;
    std::unique_ptr<Programa> programa;
    std::unique_ptr<QQmlApplicationEngine> motor;
    QQuickWindow *ventana = nullptr;
};

void PruebaFotosEnVentana::initTestCase()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    prepararAspecto();
}

void PruebaFotosEnVentana::init()
{
    QTest::failOnWarning(QRegularExpression(u"No drawing for|\\.qml"_s));
    QDir(QDir::homePath() + u"/Vellora"_s).removeRecursively();
    telefono = std::make_unique<TelefonoSimulado>();
    QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
    apariencia = std::make_unique<Apariencia>();
    programa = std::make_unique<Programa>([](const QString &) { return Llavero::Estado::Hallada; });
    QTRY_VERIFY_WITH_TIMEOUT(programa->modelo.seleccionado(), 20'000);
    programa->modelo.marcarConocido(telefono->udid());
    motor = std::make_unique<QQmlApplicationEngine>();
    ventana = abrirVentanaPrincipal(*motor, {*programa, *apariencia, {}});
    QVERIFY(ventana && QTest::qWaitForWindowActive(ventana));
}

void PruebaFotosEnVentana::cleanup()
{
    motor.reset();
    programa.reset();
    apariencia.reset();
    telefono.reset();
}

void PruebaFotosEnVentana::carpeta()
{
    tecla(Qt::Key_2, Qt::ControlModifier);
    QVERIFY(seLee(u"Las fotos de este iPhone se guardan en:"_s));
    QVERIFY(!Manos::control(*ventana, u"Por defecto"_s));
    const auto otra = QDir::homePath() + u"/Otra carpeta"_s;
    QVERIFY(QDir().mkpath(otra));
    // Closed without a choice, nothing changes.
    const auto dialogo = [] {
        return qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
    };
    for (const bool acepta : {false, true}) {
        QVERIFY(pulsa(u"Cambiar"_s));
        QVERIFY(QTest::qWaitFor([&] { return dialogo() != nullptr; }, 5000));
        QCOMPARE(dialogo()->windowTitle(), u"¿Dónde quieres guardar las fotos de este iPhone?"_s);
        QCOMPARE(dialogo()->labelText(QFileDialog::Accept), u"Usar esta carpeta"_s);
        dialogo()->setDirectory(QDir::homePath());
        dialogo()->selectFile(otra);
        auto *comoDialogo = static_cast<QDialog *>(dialogo());
        acepta ? comoDialogo->accept() : comoDialogo->reject();
        QTRY_COMPARE(programa->fotos.carpeta() == otra, acepta);
        QTRY_VERIFY(dialogo() == nullptr);
    }
    QVERIFY(seLee(otra));
    QVERIFY(pulsa(u"Por defecto"_s));
    QVERIFY(programa->fotos.carpetaEsLaDeSiempre());
}

void PruebaFotosEnVentana::liberar()
{
    QVERIFY(pulsa(u"Espacio"_s));
    QVERIFY(pulsa(u"Liberar espacio"_s));
    QVERIFY(seLee(
        u"No hay nada que borrar sin riesgo. Copia antes las fotos al Mac, o apunta la carpeta a donde ya las tengas guardadas."_s));
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"Vale"_s);
    tecla(Qt::Key_Escape);
    QVERIFY(acaba());
    QVERIFY(pulsa(u"Resumen"_s) && pulsa(u"Copiar fotos y vídeos"_s));
    QVERIFY(acaba());
    const auto todos = enElTelefono();
    QVERIFY(pulsa(u"Liberar espacio"_s));
    QVERIFY(seLee(u"¿Borrar del iPhone lo que ya está en el Mac?"_s) && acaba());
    // Return leaves everything as it is: the keyboard begins on the way out.
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"No tocar nada"_s);
    tecla(Qt::Key_Return);
    QTest::qWait(300);
    QVERIFY(!programa->consentimiento.abierto());
    QCOMPARE(enElTelefono(), todos);
    QVERIFY(pulsa(u"Limpieza"_s) && pulsa(u"Borrar lo que ya está copiado"_s));
    QVERIFY(seLee(u"¿Borrar del iPhone lo que ya está en el Mac?"_s) && acaba());
    QVERIFY(pulsa(u"Borrar del iPhone"_s));
    QTRY_COMPARE_WITH_TIMEOUT(enElTelefono(), 0, 30'000);
    QVERIFY(acaba());
}

void PruebaFotosEnVentana::borrarTodas()
{
    const auto todos = enElTelefono();
    QVERIFY(pulsa(u"Limpieza"_s));
    const auto pie = [this] {
        const auto *boton = Manos::control(*ventana, u"BORRAR TODAS las fotos"_s);
        return boton ? boton->property("pie").toString() : QString();
    };
    QTRY_COMPARE(pie(), u"🔒 Bloqueado: primero pon tus fotos a salvo"_s);
    QVERIFY(seLee(u"No tienes copia de seguridad. Si borras cosas del iPhone ahora, no hay manera de recuperarlas."_s));
    QVERIFY(pulsa(u"BORRAR TODAS las fotos"_s));
    QVERIFY(seLee(
        u"No te dejo borrar sin una copia. Podrías perder tus fotos para siempre.\n\nPrimero pon tus fotos a salvo: pulsa «Copiar fotos y vídeos» o «Hacer copia de seguridad». Cuando estén a salvo, se desbloquea el borrado."_s));
    QVERIFY(!programa->consentimiento.abierto());
    QVERIFY(pulsa(u"Vale"_s));
    const auto copia = programa->modelo.carpetaCopias() + u'/' + telefono->udid();
    QVERIFY(CopiaDePrueba::copiarTelefono(telefono->contenido(telefono->udid()), copia));
    QCOMPARE(Comprobante::comprobarYApuntar(copia).veredicto, ComprobacionDeCopia::Veredicto::Entera);
    programa->copias.cambio();
    QTRY_COMPARE(pie(), u"Fotos, miniaturas y la lista: desaparecen de verdad"_s);
    QVERIFY(pulsa(u"BORRAR TODAS las fotos"_s) && acaba());
    QVERIFY(seLee(u"¿Borrar TODAS las fotos del iPhone, sin dejar rastro?"_s));
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"No borrar nada"_s);
    tecla(Qt::Key_Escape);
    QTest::qWait(200);
    QCOMPARE(enElTelefono(), todos);
    QVERIFY(pulsa(u"BORRAR TODAS las fotos"_s) && acaba() && pulsa(u"Borrarlo todo"_s));
    QTRY_VERIFY_WITH_TIMEOUT(programa->consentimiento.aviso().contains(u"REINICIA EL IPHONE AHORA"), 30'000);
    QCOMPARE(enElTelefono(), 0);
}

void PruebaFotosEnVentana::elegirPorTeclado()
{
    auto &seleccion = programa->seleccion;
    tecla(Qt::Key_2, Qt::ControlModifier);
    QVERIFY(pulsa(u"Elegir fotos a mano"_s));
    QTRY_VERIFY_WITH_TIMEOUT(seleccion.rowCount() > 5, 20'000);
    QVERIFY(acaba());
    const auto cuantos = seleccion.rowCount();
    // What has the keyboard says which photo it is.
    QTRY_COMPARE(Manos::nombreDelFoco(*ventana), u"Foto, IMG_0001.JPG, sin copiar"_s);
    tecla(Qt::Key_Space);
    tecla(Qt::Key_Right);
    tecla(Qt::Key_Space);
    QCOMPARE(seleccion.cuantosMarcados(), 2);
    tecla(Qt::Key_Space);
    QCOMPARE(seleccion.cuantosMarcados(), 1);
    QVERIFY(seLee(u"1 no está copiada en el Mac"_s));
    // One large, its neighbour, and back.
    tecla(Qt::Key_Return);
    QTRY_VERIFY(!Manos::nombres(*ventana).filter(u"IMG_0002.JPG ·"_s).isEmpty());
    tecla(Qt::Key_Right);
    QTRY_VERIFY(!Manos::nombres(*ventana).filter(QRegularExpression(u"IMG_0003.JPG ·.*foto en vivo"_s)).isEmpty());
    tecla(Qt::Key_Escape);
    QTRY_COMPARE(Manos::nombreDelFoco(*ventana), u"Foto, IMG_0002.JPG, sin copiar"_s);
    QVERIFY(seleccion.abierta());
    // Pictures come by themselves.
    QTRY_VERIFY_WITH_TIMEOUT(!seleccion.data(seleccion.index(0), SeleccionFotos::PapelMiniatura).toUrl().isEmpty(),
                             20'000);
    QVERIFY(pulsa(u"Marcar todas"_s));
    QCOMPARE(seleccion.cuantosMarcados(), cuantos);
    QVERIFY(pulsa(u"Ninguna"_s));
    QCOMPARE(seleccion.cuantosMarcados(), 0);
    QVERIFY(pulsa(u"En vivo"_s));
    QTRY_VERIFY(seleccion.rowCount() < cuantos && seleccion.rowCount() > 0);
    QVERIFY(pulsa(u"Marcar todas"_s) && pulsa(u"Borrar del iPhone"_s));
    QVERIFY(seLee(u"¿Borrar del iPhone lo que has marcado?"_s));
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"No borrar nada"_s);
    const auto antes = enElTelefono();
    const auto vivas = seleccion.rowCount();
    QVERIFY(pulsa(u"Borrar del iPhone"_s));
    QTRY_VERIFY_WITH_TIMEOUT(programa->consentimiento.aviso().contains(u"REINICIA EL IPHONE"), 30'000);
    QCOMPARE(enElTelefono(), antes - 2 * vivas);
    QVERIFY(pulsa(u"Vale"_s) && acaba());
    tecla(Qt::Key_Escape);
    QTRY_VERIFY(!seleccion.abierta());
    QVERIFY(seLee(u"Traer y ordenar"_s));
}

void PruebaFotosEnVentana::carreteVacio()
{
    QVERIFY(QDir(carrete()).removeRecursively() && QDir().mkpath(carrete()));
    QVERIFY(pulsa(u"Limpieza"_s) && pulsa(u"Elegir cuáles borrar"_s));
    QVERIFY(seLee(u"El carrete está vacío"_s));
    QVERIFY(acaba() && pulsa(u"Volver"_s));
    QVERIFY(!programa->seleccion.abierta());
    // A phone that does not let us in.
    QVERIFY(telefono->orden(u"bloquear"_s));
    QVERIFY(pulsa(u"Elegir cuáles borrar"_s) && acaba());
    QVERIFY(programa->modelo.tarea().registro().join(u' ').contains(u"bloqueado"));
    // What could not be read is not called empty.
    QVERIFY(seLee(u"No he podido leer el carrete"_s) && !Manos::seLee(*ventana, u"El carrete está vacío"_s));
    QVERIFY(telefono->orden(u"desbloquear"_s));
    // A reading that met it locked may have put it aside until the next.
    QTRY_VERIFY_WITH_TIMEOUT(programa->modelo.seleccionado().has_value(), 30'000);
    QVERIFY(pulsa(u"Intentar otra vez"_s));
    QVERIFY(seLee(u"El carrete está vacío"_s) && acaba());
}

void PruebaFotosEnVentana::cabeYTieneNombre_data()
{
    QTest::addColumn<int>("ancho");
    for (const int ancho : {960, 1280, 1920})
        QTest::newRow(QByteArray::number(ancho).constData()) << ancho;
}

void PruebaFotosEnVentana::cabeYTieneNombre()
{
    QFETCH(const int, ancho);
    ventana->resize(ancho, 700);
    programa->fotos.ponCarpeta(QDir::homePath()); // so that "Por defecto" is there too
    const auto revisar = [this](const char *donde) {
        QTest::qWait(200);
        const auto mudos = Manos::sinNombre(*ventana);
        QVERIFY2(mudos.isEmpty(), qPrintable(QString::fromUtf8(donde) + u": "_s + mudos.join(u", "_s)));
        QList<QQuickItem *> cosas;
        bajar(ventana->contentItem(), cosas);
        for (auto *item : cosas) {
            if (!item->isVisible() || item->property("apretado").isNull() || item->width() <= 0)
                continue;
            const auto caja = item->mapRectToScene(item->boundingRect());
            QVERIFY2(caja.left() >= -1 && caja.right() <= ventana->width() + 1,
                     qPrintable(QString::fromUtf8(donde) + u": "_s + item->property("nombre").toString()));
        }
    };
    for (const auto &seccion : {u"Fotos"_s, u"Espacio"_s, u"Limpieza"_s}) {
        QVERIFY(pulsa(seccion));
        revisar(qPrintable(seccion));
    }
    QVERIFY(pulsa(u"Elegir cuáles borrar"_s));
    QTRY_VERIFY_WITH_TIMEOUT(programa->seleccion.rowCount() > 5, 20'000);
    revisar("roll");
    programa->seleccion.marcarTodas();
    revisar("roll, all marked");
    QVERIFY(acaba());
}

QTEST_MAIN(PruebaFotosEnVentana)
#include "PruebaFotosEnVentana.moc"
