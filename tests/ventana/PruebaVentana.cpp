#include "core/Preferencias.h"
#include "platform/Apariencia.h"
#include "support/BaseDePrueba.h"
#include "ui/Interfaz.h"
#include "ui/sesion/Programa.h"
#include "ventana/Manos.h"

#include <QAccessible>
#include <QDir>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <atomic>

using namespace Qt::StringLiterals;
using namespace vellora;

/// The whole window, by keyboard and by what an assistive tool sees, on a session whose phones are put in by hand.
class PruebaVentana : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { prepararAspecto(); }
    void init();
    void cleanup();
    void sinHerramientasNoHaySecciones();
    void seccionesPorTeclado();
    void tabuladorPorLaVentana();
    void bienvenidaPorTeclado();
    void claveDeCifrado();
    void menuDeAcciones();
    void ajustesYBloqueo();
    void devolverPregunta();
    void datosDeTelegram();
    void bateriaALaVista();
    void cerrarConTrabajo();
    void recuerdaLaSeccion();
    void todoTieneNombre();
    void campana();
    void tiraDeUnTrabajo();
    void eligeEntreDosIPhones();
    void nadaSeCorta_data();
    void nadaSeCorta();
    void quietaNoPinta();

private:
    void abrir(const QStringList &falta = {});
    void conectar(const QList<Dispositivo> &iphones);
    void tecla(Qt::Key cual, Qt::KeyboardModifiers con = {}) { QTest::keyClick(ventana, cual, con); }
    bool seLee(const QString &texto) { return Manos::seLee(*ventana, texto); }

    std::unique_ptr<Apariencia> apariencia;
    std::unique_ptr<Programa> programa;
    Modelo *modelo = nullptr;
    Copias *copias = nullptr;
    std::atomic<Llavero::Estado> estadoDeClave = Llavero::Estado::Hallada;
    std::unique_ptr<QQmlApplicationEngine> motor;
    QQuickWindow *ventana = nullptr;
};

namespace
{

Dispositivo iphone(const QString &nombre, const QString &cola)
{
    Dispositivo uno;
    uno.id = u"00008120-00061C2A3E"_s + cola;
    uno.nombre = nombre;
    uno.modeloCrudo = u"iPhone15,3"_s;
    uno.sistema = u"17.5.1"_s;
    uno.bateria = 82;
    uno.cargando = true;
    uno.libresBytes = 38'200'000'000;
    uno.totalBytes = 256'000'000'000;
    return uno;
}

const auto marta = iphone(u"iPhone de Marta"_s, u"4C1E9A"_s);
const auto luis = iphone(u"iPhone de Luis"_s, u"B2B2B2"_s);
const auto sinIPhone = u"No veo ningún iPhone"_s;
const auto tituloDeCopias = u"Copias y datos"_s;
const auto explicacion =
    u"La copia de seguridad es lo único que te devuelve los mensajes y WhatsApp si pierdes el iPhone. "
    "Las fotos van por su lado."_s;

} // namespace

void PruebaVentana::init()
{
    QTest::failOnWarning(QRegularExpression(u"No drawing for|\\.qml"_s));
    Preferencias::ponLista(u"iPhonesConocidos"_s, {});
    apariencia = std::make_unique<Apariencia>();
    Preferencias::ponTexto(u"seccion"_s, {});
    programa = std::make_unique<Programa>([this](const QString &) { return estadoDeClave.load(); });
    modelo = &programa->modelo;
    copias = &programa->copias;
    QSignalSpy primera(modelo, &Modelo::refrescado);
    QVERIFY(primera.wait(20000)); // what it found is replaced by what each test connects
}

void PruebaVentana::cleanup()
{
    motor.reset();
    programa.reset();
    apariencia.reset();
}

void PruebaVentana::abrir(const QStringList &falta)
{
    motor = std::make_unique<QQmlApplicationEngine>();
    ventana = abrirVentanaPrincipal(*motor, {*programa, *apariencia, falta});
    QVERIFY(ventana);
    QVERIFY(QTest::qWaitForWindowActive(ventana));
}

void PruebaVentana::conectar(const QList<Dispositivo> &iphones)
{
    const auto &antes = modelo->seleccionado();
    modelo->aplicar(iphones, antes ? std::optional(antes->id) : std::nullopt);
}

void PruebaVentana::sinHerramientasNoHaySecciones()
{
    abrir({u"libimobiledevice"_s, u"pymobiledevice3"_s});
    QVERIFY(seLee(u"Falta una pieza"_s));
    QVERIFY(seLee(u"Esta app se apoya en libimobiledevice y pymobiledevice3, que no encuentro en el Mac.\n"
                  "Díselo a Claude y te lo deja instalado."_s));
    conectar({marta});
    tecla(Qt::Key_4, Qt::ControlModifier);
    QVERIFY(seLee(u"Falta una pieza"_s));
    QVERIFY(!seLee(explicacion));
    QVERIFY(!seLee(u"Resumen"_s));
    QVERIFY(!seLee(u"Hola, es la primera vez que conecto este iPhone"_s));
}

void PruebaVentana::seccionesPorTeclado()
{
    abrir();
    QVERIFY(seLee(sinIPhone));
    QVERIFY(seLee(u"Sin iPhone conectado"_s));
    tecla(Qt::Key_4, Qt::ControlModifier);
    QVERIFY(seLee(explicacion)); // it needs no phone
    QVERIFY(!seLee(sinIPhone));
    tecla(Qt::Key_3, Qt::ControlModifier);
    QVERIFY(seLee(explicacion)); // still to come: nothing moves
    QVERIFY(seLee(u"Buscar fotos, todavía no disponible"_s));
    Manos::pulsar(*ventana, u"Buscar fotos, todavía no disponible"_s);
    QVERIFY(seLee(explicacion));
    tecla(Qt::Key_1, Qt::ControlModifier);
    QVERIFY(seLee(sinIPhone));

    QVERIFY(!modelo->buscando());
    tecla(Qt::Key_F5);
    QVERIFY(modelo->buscando());
    QVERIFY(seLee(u"Buscando tu iPhone…"_s));
}

void PruebaVentana::tabuladorPorLaVentana()
{
    modelo->marcarConocido(marta.id);
    abrir();
    const QStringList comunes{u"Fotos"_s,          u"Copias y datos"_s,
                              u"Buscar en todo"_s, u"Espacio"_s,
                              u"Limpieza"_s,       u"Contactos"_s,
                              u"Contraseñas"_s,    u"Ajustes"_s,
                              u"Ayuda y legal"_s,  u"Buscar el iPhone otra vez"_s,
                              u"Acciones"_s,       u"Avisos. 0 en marcha, 0 con problemas"_s};
    // The list comes first, then the header, then the content; what is still to come is passed over.
    auto *primera = Manos::control(*ventana, u"Resumen"_s);
    primera->forceActiveFocus();
    QCOMPARE(Manos::paradasDelTabulador(*ventana), comunes + QStringList({u"Buscar otra vez"_s, u"Resumen"_s}));
    conectar({marta});
    primera->forceActiveFocus();
    QCOMPARE(Manos::paradasDelTabulador(*ventana),
             comunes +
                 QStringList({u"Copiar fotos y vídeos"_s, u"Hacer la copia ahora"_s, u"Liberar espacio"_s,
                              u"Ver la copia por dentro"_s, u"Mirar la batería"_s, u"Bloquear ahora"_s, u"Resumen"_s}));

    primera->forceActiveFocus();
    tecla(Qt::Key_Down);
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"Fotos"_s);
    tecla(Qt::Key_Down);
    QCOMPARE(Manos::nombreDelFoco(*ventana), tituloDeCopias);
    tecla(Qt::Key_Return);
    QVERIFY(seLee(explicacion));
}

void PruebaVentana::bienvenidaPorTeclado()
{
    const auto saludo = u"Hola, es la primera vez que conecto este iPhone"_s;
    abrir();
    conectar({marta});
    QVERIFY(seLee(saludo));
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"Hacer una copia de seguridad"_s);
    const auto paradas = Manos::paradasDelTabulador(*ventana);
    QCOMPARE(QSet(paradas.cbegin(), paradas.cend()),
             QSet<QString>({u"Hacer una copia de seguridad"_s, u"Trabajar directamente, sin copia"_s, u"Cerrar"_s}));
    tecla(Qt::Key_4, Qt::ControlModifier);
    QVERIFY(!seLee(explicacion)); // what is behind does not move

    tecla(Qt::Key_Escape);
    QVERIFY(!seLee(saludo));
    QVERIFY(!modelo->esConocido(marta.id));
    QVERIFY(!modelo->tarea().enMarcha());
    tecla(Qt::Key_4, Qt::ControlModifier);
    QVERIFY(seLee(explicacion));

    conectar({});
    conectar({marta});
    QVERIFY(seLee(saludo));
    QVERIFY(Manos::pulsar(*ventana, u"Trabajar directamente, sin copia"_s));
    QVERIFY(!seLee(saludo));
    QVERIFY(modelo->esConocido(marta.id));
    QVERIFY(!modelo->tarea().enMarcha());
}

void PruebaVentana::claveDeCifrado()
{
    const auto activar = u"Activar y hacer la copia"_s;
    modelo->marcarConocido(marta.id);
    estadoDeClave = Llavero::Estado::SinClave;
    abrir();
    conectar({marta});
    tecla(Qt::Key_4, Qt::ControlModifier);
    QTRY_COMPARE(copias->pieDeHacerCopia(), u"Te pediré una contraseña"_s);
    QVERIFY(Manos::pulsar(*ventana, u"Hacer la copia ahora"_s));
    QTRY_VERIFY(seLee(u"Copia cifrada"_s));
    QVERIFY(seLee(u"El iPhone te pedirá confirmarlo en su pantalla."_s));
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"Contraseña (mínimo 6 caracteres)"_s);

    const auto escribir = [this](const QString &una, const QString &otra) {
        copias->setProperty("clave", una);
        copias->setProperty("claveRepetida", otra);
        return copias->claveVale();
    };
    QVERIFY(!escribir(u"ñandú"_s, u"ñandú"_s));
    QVERIFY(!escribir(u"secreta"_s, u"secretA"_s));
    QVERIFY(escribir(u"ñandús"_s, u"ñandús"_s));
    QVERIFY(escribir(u"      "_s, u"      "_s));
    QVERIFY(!escribir(u"n\u0303andu"_s, u"n\u0303andu"_s)); // five, as a person counts
    QVERIFY(!escribir(u"👨‍👩‍👧‍👦1234"_s, u"👨‍👩‍👧‍👦1234"_s));
    QVERIFY(!escribir({}, {}));
    QVERIFY(!Manos::control(*ventana, activar));

    // By keyboard, as one types it.
    Manos::escribir(*ventana, u"abc123"_s);
    tecla(Qt::Key_Return);
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"Repítela"_s);
    Manos::escribir(*ventana, u"abc12"_s);
    tecla(Qt::Key_Return);
    QVERIFY(copias->pidiendoClave());
    Manos::escribir(*ventana, u"3"_s);
    QVERIFY(Manos::control(*ventana, activar));
    for (const auto &nombre : Manos::nombres(*ventana))
        QVERIFY2(!nombre.contains(u"abc123"_s), qPrintable(nombre));

    tecla(Qt::Key_Escape);
    QVERIFY(!seLee(u"Copia cifrada"_s));
    QVERIFY(copias->property("clave").toString().isEmpty() && copias->property("claveRepetida").toString().isEmpty());
    QVERIFY(!modelo->tarea().enMarcha());
    QVERIFY(Manos::pulsar(*ventana, u"Hacer la copia ahora"_s));
    QTRY_VERIFY(copias->pidiendoClave());
    QVERIFY(!copias->claveVale());

    // It is that phone's: what was typed for it is not another's, nor does the question outlast it.
    QVERIFY(escribir(u"secreta"_s, u"secreta"_s) && seLee(u"Para «%1»"_s.arg(marta.nombre)));
    conectar({luis});
    QVERIFY(!copias->pidiendoClave() && copias->property("clave").toString().isEmpty());
    copias->resolverClave(true); // the click that was already under way
    QVERIFY(!modelo->tarea().enMarcha());
    estadoDeClave = Llavero::Estado::Hallada;
}

void PruebaVentana::menuDeAcciones()
{
    modelo->marcarConocido(marta.id);
    abrir();
    conectar({marta});
    tecla(Qt::Key_F10);
    auto esperadas = QStringList{u"Copiar fotos y vídeos"_s,
                                 u"Hacer copia de seguridad"_s,
                                 u"Sacar mis datos de la copia"_s,
                                 u"Ordenar mis fotos por año y mes"_s,
                                 u"Convertir fotos a JPG"_s,
                                 u"Quitar la localización de las fotos"_s,
                                 u"Mapa de mis fotos"_s,
                                 u"Revisar la seguridad del iPhone"_s,
                                 u"Buscar programas espía"_s,
                                 u"Traer los iconos de las apps"_s,
                                 u"Cómo está todo"_s,
                                 u"Cuántas fotos hago"_s,
                                 u"Qué ocupa mi iPhone"_s,
                                 u"Abrir mi carpeta"_s,
                                 u"Buscar el iPhone otra vez"_s};
    auto leidas = Manos::nombres(*ventana);
    leidas = leidas.mid(leidas.lastIndexOf(u"Acciones"_s) + 1, esperadas.size());
    leidas.replaceInStrings(u", todavía no disponible"_s, QString());
    QCOMPARE(leidas, esperadas);
    QVERIFY(!Manos::control(*ventana, u"Copiar fotos y vídeos, todavía no disponible"_s));
    QVERIFY(!Manos::control(*ventana, u"Sacar mis datos de la copia"_s)); // there is none yet
    QVERIFY(Manos::pulsar(*ventana, u"Hacer copia de seguridad"_s));
    QTRY_VERIFY(modelo->tarea().titulo().startsWith(u"Copia de seguridad"_s));
    QTRY_VERIFY_WITH_TIMEOUT(modelo->tarea().terminada(), 20000); // there is no such phone
    QVERIFY(!seLee(u"Cuántas fotos hago, todavía no disponible"_s));
}

void PruebaVentana::ajustesYBloqueo()
{
    modelo->marcarConocido(marta.id);
    abrir();
    conectar({marta});
    QVERIFY(Manos::pulsar(*ventana, u"Ajustes"_s));
    QVERIFY(Manos::pulsar(*ventana, u"Oscuro"_s));
    QCOMPARE(Preferencias::texto(u"tema"_s), u"oscuro"_s);
    QVERIFY(Manos::pulsar(*ventana, u"Como el sistema"_s));
    QVERIFY(Manos::pulsar(*ventana, u"Copia en cuanto lo enchufo"_s));
    QVERIFY(programa->automaticas.alEnchufar());
    QVERIFY(Manos::pulsar(*ventana, u"Copia en cuanto lo enchufo"_s));
    QVERIFY(!programa->automaticas.alEnchufar());

    // Here there is nobody to ask: what nothing could open again stays open, and no word promises otherwise.
    QVERIFY(Manos::pulsar(*ventana, u"Bloquear ahora"_s));
    QVERIFY(programa->cerradura.abierta() && seLee(programa->cerradura.promesa()));
    // On a computer where there was somebody, it is closed.
    Preferencias::ponLogico(u"comprobacionVista"_s, true);
    programa->cerradura.abrir();
    QVERIFY(seLee(u"Para entrar hace falta la contraseña del Mac"_s));
    QVERIFY(seLee(u"Todo se queda en este Mac: sin nube, sin cuentas y sin internet."_s));
    // Nothing of the owner's, by eye or by ear, and no key that leads past it.
    QVERIFY(!seLee(u"iPhone de Marta"_s) && !seLee(u"Resumen"_s));
    tecla(Qt::Key_4, Qt::ControlModifier);
    QVERIFY(!seLee(explicacion));
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"Desbloquear"_s);
    tecla(Qt::Key_Return);
    QVERIFY(!programa->cerradura.abierta() && seLee(programa->cerradura.motivoFallo()));
    Preferencias::ponLogico(u"comprobacionVista"_s, false);
    tecla(Qt::Key_Return);
    QVERIFY(seLee(u"Resumen"_s) && programa->cerradura.abierta());
    QCOMPARE(programa->cerradura.motivoFallo(), u"Este Mac no tiene huella ni contraseña configuradas."_s);
}

void PruebaVentana::devolverPregunta()
{
    modelo->marcarConocido(marta.id);
    abrir();
    conectar({marta});
    tecla(Qt::Key_4, Qt::ControlModifier);
    const auto copia = [](const Dispositivo &de) {
        return QDir::homePath() + u"/Vellora/%1/Copias de seguridad/%2/Manifest.db"_s.arg(de.nombre, de.id);
    };
    QVERIFY(escribirFichero(copia(marta), "x"));
    QVERIFY(Manos::pulsar(*ventana, u"Devolver la copia al iPhone"_s));
    QTRY_VERIFY(seLee(u"¿Devolver la copia al iPhone?"_s));
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"No hacer nada"_s);
    tecla(Qt::Key_Return);
    QVERIFY(!seLee(u"¿Devolver la copia al iPhone?"_s) && !modelo->tarea().enMarcha());
    QVERIFY(Manos::pulsar(*ventana, u"Devolver la copia al iPhone"_s));
    QTRY_VERIFY(seLee(u"¿Devolver la copia al iPhone?"_s));
    tecla(Qt::Key_Escape);
    QVERIFY(!seLee(u"¿Devolver la copia al iPhone?"_s) && modelo->tarea().titulo().isEmpty());
    // Unplugged while the question stood: it goes with its phone.
    QVERIFY(Manos::pulsar(*ventana, u"Devolver la copia al iPhone"_s));
    QTRY_VERIFY(seLee(u"¿Devolver la copia al iPhone?"_s));
    conectar({marta});
    // Among those of several phones one chooses; the sheet is this phone's too.
    tecla(Qt::Key_Escape);
    QVERIFY(escribirFichero(copia(luis), "x"));
    QVERIFY(Manos::pulsar(*ventana, u"Devolver la copia al iPhone"_s));
    QTRY_VERIFY(programa->devolucion.copias().size() == 2);
    QVERIFY(seLee(u"¿Qué copia quieres devolver?"_s));
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"No hacer nada"_s);
    conectar({});
    QVERIFY(!seLee(u"¿Qué copia quieres devolver?"_s));
    QTRY_VERIFY(!Manos::control(*ventana, u"Devolver la copia"_s));
    QVERIFY(modelo->tarea().titulo().isEmpty());
}

void PruebaVentana::datosDeTelegram()
{
    abrir();
    tecla(Qt::Key_4, Qt::ControlModifier);
    auto &telegram = programa->telegram;
    QVERIFY(Manos::pulsar(*ventana, u"Avisarme por Telegram"_s));
    QVERIFY(telegram.encendido());
    QTRY_VERIFY(seLee(u"Pega aquí los datos de tu bot. Se guardan en el Llavero del Mac, no en un archivo."_s));
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"Token del bot"_s);
    Manos::escribir(*ventana, u"1234567890:ABCDEFGH"_s); // 19
    tecla(Qt::Key_Return);
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"Tu identificador de chat"_s);
    Manos::escribir(*ventana, u"77"_s);
    QVERIFY(!Manos::control(*ventana, u"Guardar"_s));
    tecla(Qt::Key_Tab, Qt::ShiftModifier);
    tecla(Qt::Key_End);
    Manos::escribir(*ventana, u"I"_s);
    QVERIFY(Manos::control(*ventana, u"Guardar"_s));
    for (const auto &nombre : Manos::nombres(*ventana))
        QVERIFY2(!nombre.contains(u"ABCDEFGH"_s), qPrintable(nombre));
    QVERIFY(Manos::pulsar(*ventana, u"Cancelar"_s));
    QVERIFY(!telegram.pidiendoDatos());
    QTRY_VERIFY(!telegram.encendido());
    QVERIFY(telegram.property("token").toString().isEmpty());
}

void PruebaVentana::bateriaALaVista()
{
    QDir().mkpath(QDir::homePath() + u"/Vellora/iPhone de Marta/Informes"_s);
    modelo->marcarConocido(marta.id);
    abrir();
    conectar({marta});
    // There is no such phone here: the job says so, and no view of zeros comes up.
    QVERIFY(Manos::pulsar(*ventana, u"Mirar la batería"_s));
    QTRY_VERIFY_WITH_TIMEOUT(modelo->tarea().terminada(), 20000);
    QCOMPARE(modelo->tarea().terminadaBien(), false);
    QVERIFY(!programa->bateria.verBateria() && !seLee(u"La batería de tu iPhone"_s));
}

void PruebaVentana::cerrarConTrabajo()
{
    abrir();
    modelo->tarea().empezar(u"Copia de seguridad completa"_s, u"Preparando..."_s);
    ventana->close();
    QVERIFY(ventana->isVisible() && seLee(u"Hay un trabajo en marcha"_s));
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"Seguir"_s);
    tecla(Qt::Key_Escape);
    QVERIFY(ventana->isVisible() && !seLee(u"Hay un trabajo en marcha"_s));
    ventana->close();
    QVERIFY(Manos::pulsar(*ventana, u"Cerrar y pararlo"_s));
    QTRY_VERIFY(!ventana->isVisible());
    modelo->tarea().cerrar(false);
}

void PruebaVentana::recuerdaLaSeccion()
{
    abrir();
    QVERIFY(Manos::pulsar(*ventana, u"Ayuda y legal"_s));
    ventana->setGeometry(40, 30, 1100, 700);
    QTRY_COMPARE(ventana->width(), 1100);
    ventana->close();
    motor.reset();
    abrir();
    QVERIFY(seLee(u"En qué se apoya"_s));
    QCOMPARE(ventana->size(), QSize(1100, 700));
    motor.reset();
    Preferencias::ponTexto(u"seccion"_s, u"3000000000"_s);
    Preferencias::ponTexto(u"ventana"_s, u"-90000 0 1 1"_s); // on a screen that is gone
    programa->ajustes.ponSeccion(99);
    abrir();
    QVERIFY(seLee(sinIPhone) && ventana->width() >= 960);
}

void PruebaVentana::todoTieneNombre()
{
    modelo->marcarConocido(marta.id);
    abrir();
    conectar({marta});
    const auto revisar = [this](const char *donde) {
        const auto mudos = Manos::sinNombre(*ventana);
        QVERIFY2(mudos.isEmpty(), qPrintable(QString::fromUtf8(donde) + u": "_s + mudos.join(u", "_s)));
    };
    revisar("resumen");
    tecla(Qt::Key_F10);
    revisar("acciones");
    tecla(Qt::Key_Escape);
    tecla(Qt::Key_4, Qt::ControlModifier);
    revisar("copias");
    programa->devolucion.pedir();
    QTRY_VERIFY(!programa->devolucion.mirando());
    revisar("devolver");
    tecla(Qt::Key_Escape);
    programa->telegram.pedirDatos();
    revisar("telegram");
    tecla(Qt::Key_Escape);
    for (const auto &seccion : {u"Ajustes"_s, u"Ayuda y legal"_s}) {
        QVERIFY(Manos::pulsar(*ventana, seccion));
        revisar(qPrintable(seccion));
    }
    // As on a computer that used to ask.
    Preferencias::ponLogico(u"comprobacionVista"_s, true);
    programa->cerradura.abrir();
    Preferencias::ponLogico(u"comprobacionVista"_s, false);
    revisar("bloqueo");
}

void PruebaVentana::campana()
{
    abrir();
    auto &diario = modelo->diario();
    diario.borrarTodo();
    auto &tarea = modelo->tarea();
    tarea.empezar(u"Copia de seguridad completa"_s, u"Preparando..."_s);
    QVERIFY(seLee(u"Avisos. 1 en marcha, 0 con problemas"_s));
    tarea.cerrar(false);
    const auto nombre = u"Avisos. 0 en marcha, 1 con problemas"_s;
    auto *boton = Manos::control(*ventana, nombre);
    QVERIFY(boton);
    boton->forceActiveFocus();
    tecla(Qt::Key_Space);
    QCOMPARE(diario.fallidas(), 0);
    QVERIFY(seLee(u"Qué ha pasado"_s));
    // One that goes wrong while the panel is open was looked at, too.
    tarea.empezar(u"Otra copia"_s, QString());
    tarea.cerrar(false);
    QCOMPARE(diario.fallidas(), 1);
    tecla(Qt::Key_Escape);
    QVERIFY(!seLee(u"Qué ha pasado"_s));
    QCOMPARE(diario.fallidas(), 0);
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"Avisos. 0 en marcha, 0 con problemas"_s);

    tecla(Qt::Key_Return);
    QVERIFY(Manos::pulsar(*ventana, u"Vaciar"_s));
    QCOMPARE(diario.cuantas(), 0);
    QVERIFY(seLee(u"Todavía no has hecho nada"_s));
}

void PruebaVentana::tiraDeUnTrabajo()
{
    modelo->marcarConocido(marta.id);
    abrir();
    conectar({marta});
    auto &tarea = modelo->tarea();
    QVERIFY(!seLee(u"Cancelar"_s));
    tarea.empezar(u"Copia de seguridad completa"_s, u"Preparando..."_s);
    QVERIFY(seLee(u"Copia de seguridad completa"_s) && seLee(u"Preparando..."_s) && seLee(u"Cancelar"_s));
    QVERIFY(!Manos::pulsar(*ventana, u"Hacer la copia ahora"_s)); // one job at a time
    QVERIFY(!seLee(u"Ver detalles"_s));
    tarea.ponInicio(QDateTime::currentDateTime().addSecs(-600));
    tarea.ponAvance(45, 100);
    QVERIFY(seLee(u"45%"_s) && seLee(u"quedan unos 12 minutos"_s));
    tarea.apunta(u"Primera línea"_s);
    QVERIFY(Manos::pulsar(*ventana, u"Ver detalles"_s));
    auto *detalles = Manos::control(*ventana, u"Detalles"_s);
    QVERIFY(detalles);
    tarea.apunta(u"Segunda línea"_s);
    QCOMPARE(detalles->property("text").toString(), u"Primera línea\nSegunda línea"_s);
    QVERIFY(Manos::pulsar(*ventana, u"Ocultar detalles"_s));

    tarea.ponCarpetaResultado(u"/tmp"_s);
    QVERIFY(!seLee(u"Abrir la carpeta"_s)); // not before the end
    tarea.cerrar(true);
    QVERIFY(seLee(u"Terminado"_s) && seLee(u"Abrir la carpeta"_s) && !seLee(u"Cancelar"_s));
    QVERIFY(Manos::pulsar(*ventana, u"Cerrar este aviso"_s));
    QVERIFY(!seLee(u"Copia de seguridad completa"_s));

    tarea.muestra();
    tarea.empezar(u"Otra"_s, QString());
    QVERIFY(Manos::pulsar(*ventana, u"Cancelar"_s));
    QVERIFY(seLee(u"No se completó"_s));
    QCOMPARE(tarea.terminadaBien(), false);
}

void PruebaVentana::eligeEntreDosIPhones()
{
    modelo->marcarConocido(marta.id);
    abrir();
    conectar({marta});
    const auto boton = u"iPhone de Marta. Elegir otro iPhone"_s;
    QVERIFY(!Manos::pulsar(*ventana, boton)); // a single phone is not a choice
    conectar({marta, luis});
    Manos::control(*ventana, boton)->forceActiveFocus();
    tecla(Qt::Key_Return);
    QVERIFY(Manos::nombreDelFoco(*ventana).startsWith(u"iPhone de Marta, "_s));
    tecla(Qt::Key_Down);
    tecla(Qt::Key_Return);
    QCOMPARE(modelo->seleccionado()->id, luis.id);
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"iPhone de Luis. Elegir otro iPhone"_s);
}

void PruebaVentana::nadaSeCorta_data()
{
    QTest::addColumn<QSize>("tamano");
    for (const auto &tamano : {QSize(960, 640), QSize(1280, 820), QSize(1920, 1080)})
        QTest::addRow("%d", tamano.width()) << tamano;
}

void PruebaVentana::nadaSeCorta()
{
    QFETCH(QSize, tamano);
    modelo->marcarConocido(marta.id);
    abrir();
    ventana->resize(tamano);
    conectar({marta});
    modelo->tarea().empezar(u"Copia de seguridad completa"_s, u"Desbloquea el iPhone para continuar"_s);
    modelo->tarea().ponInicio(QDateTime::currentDateTime().addSecs(-6000));
    modelo->tarea().ponAvance(45, 100);
    for (const auto cual : {Qt::Key_1, Qt::Key_4}) {
        tecla(cual, Qt::ControlModifier);
        QTest::qWait(50);
        const auto todos = ventana->contentItem()->findChildren<QQuickItem *>();
        for (const auto *item : todos) {
            if (!item->isVisible() || !item->property("truncated").isValid())
                continue;
            const auto texto = item->property("text").toString();
            QVERIFY2(!item->property("truncated").toBool(), qPrintable(texto));
            const auto derecha = item->mapToScene(QPointF(item->property("contentWidth").toDouble(), 0)).x();
            QVERIFY2(derecha <= ventana->width(), qPrintable(texto));
        }
    }
}

void PruebaVentana::quietaNoPinta()
{
    modelo->marcarConocido(marta.id);
    abrir();
    conectar({marta});
    QTest::qWait(500);
    QSignalSpy fotogramas(ventana, &QQuickWindow::frameSwapped);
    QTest::qWait(1500);
    QVERIFY2(fotogramas.size() <= 1, "something moves in a window that has nothing to tell");
}

QTEST_MAIN(PruebaVentana)
#include "PruebaVentana.moc"
