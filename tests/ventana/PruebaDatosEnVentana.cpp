#include "core/Preferencias.h"
#include "platform/Apariencia.h"
#include "support/BaseDePrueba.h"
#include "support/TextosHostiles.h"
#include "ui/Interfaz.h"
#include "ui/sesion/Programa.h"
#include "ventana/Manos.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// What was taken out of a backup, in the true window: by keyboard, and with the worst that people can send.
class PruebaDatosEnVentana : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { prepararAspecto(); }
    void init();
    void cleanup();
    void inventarioYVuelta();
    void sinNadaSacado();
    void textosEnElChat();
    void textosEnLoDemas();
    void buscarPorTeclado();
    void guardarConElDialogo();
    void contrasenasDeUnaEnUna();
    void contactosPorTeclado();
    void todoTieneNombre();
    void nadaSeCorta_data();
    void nadaSeCorta();
    void chatLargo();

private:
    QString datos() const { return programa->modelo.carpetaDatos(); }
    void pon(const QString &nombre, const QByteArray &texto) const
    {
        QVERIFY(escribirFichero(datos() + u'/' + nombre, texto));
    }
    void tecla(Qt::Key cual, Qt::KeyboardModifiers con = {}) const { QTest::keyClick(ventana, cual, con); }
    bool seLee(const QString &texto) const
    {
        return QTest::qWaitFor([&] { return Manos::seLee(*ventana, texto); }, 5000);
    }
    bool pulsa(const QString &nombre) const
    {
        return QTest::qWaitFor([&] { return Manos::pulsar(*ventana, nombre); }, 5000);
    }
    static void bajar(QQuickItem *item, QList<QQuickItem *> &todos)
    {
        todos << item;
        for (auto *hijo : item->childItems())
            bajar(hijo, todos);
    }
    QList<QQuickItem *> cosas() const
    {
        QList<QQuickItem *> todas;
        bajar(ventana->contentItem(), todas);
        return todas;
    }
    /// Every text in the window, seen or not.
    QList<QQuickItem *> textos() const
    {
        QList<QQuickItem *> lista;
        for (auto *item : cosas()) {
            if (item->property("textFormat").isValid() && item->property("text").isValid())
                lista << item;
        }
        return lista;
    }
    /// What a text may hold is shown as it is, whatever it looks like: no part of the window takes it for markup.
    void nadaEsMarcado() const
    {
        for (auto *uno : textos())
            QVERIFY2(uno->property("textFormat").toInt() == Qt::PlainText,
                     qPrintable(uno->property("text").toString()));
    }
    QQuickItem *conTexto(const QString &texto) const
    {
        for (auto *uno : textos()) {
            if (uno->isVisible() && uno->property("text").toString() == texto)
                return uno;
        }
        return nullptr;
    }
    QQuickItem *lista(const QString &nombre) const
    {
        for (auto *item : cosas()) {
            if (item->isVisible() && item->property("reuseItems").isValid() &&
                item->property("nombre").toString() == nombre)
                return item;
        }
        return nullptr;
    }
    bool lleva(QQuickItem *cual, int fila) const
    {
        return cual && QMetaObject::invokeMethod(cual, "positionViewAtIndex", Q_ARG(int, fila), Q_ARG(int, 1));
    }

    std::unique_ptr<Apariencia> apariencia;
    std::unique_ptr<Programa> programa;
    std::unique_ptr<QQmlApplicationEngine> motor;
    QQuickWindow *ventana = nullptr;
};

void PruebaDatosEnVentana::init()
{
    QTest::failOnWarning(QRegularExpression(u"No drawing for|\\.qml"_s));
    QDir(QDir::homePath() + u"/Vellora"_s).removeRecursively();
    // A finished backup, as far as the window looks at one.
    const auto copia = QDir::homePath() + u"/Vellora/iPhone/Copias de seguridad/00008120-000A1B2C3D4C1E9A"_s;
    QVERIFY(escribirFichero(copia + u"/Manifest.db"_s, "x"));
    apariencia = std::make_unique<Apariencia>();
    programa = std::make_unique<Programa>([](const QString &) { return Llavero::Estado::Hallada; });
    QSignalSpy primera(&programa->modelo, &Modelo::refrescado);
    QVERIFY(primera.wait(20'000));
    motor = std::make_unique<QQmlApplicationEngine>();
    ventana = abrirVentanaPrincipal(*motor, {*programa, *apariencia, {}});
    QVERIFY(ventana && QTest::qWaitForWindowActive(ventana));
}

void PruebaDatosEnVentana::cleanup()
{
    motor.reset();
    programa.reset();
    apariencia.reset();
}

void PruebaDatosEnVentana::inventarioYVuelta()
{
    pon(u"WhatsApp/Chats/Ana.txt"_s, "[01/02/2026 10:00] Ana: hola\n");
    pon(u"Llamadas.csv"_s, "Número;Fecha\n600;01/02/2026 10:00\n");
    pon(u"Notas.txt"_s, "TUS NOTAS\n\n── Lista  (x)\nleche\n");
    tecla(Qt::Key_4, Qt::ControlModifier);
    QVERIFY(pulsa(u"Ver mis datos"_s));
    QVERIFY(!programa->modelo.tarea().enMarcha()); // there is something already
    QVERIFY(pulsa(u"WhatsApp, 1 chat. Ver"_s));
    QVERIFY(seLee(u"Ana: hola. 10:00"_s));
    tecla(Qt::Key_Escape);
    QVERIFY(pulsa(u"Llamadas, 1 llamada. Ver"_s));
    QVERIFY(seLee(u"600, 01/02/2026 10:00"_s));
    QVERIFY(pulsa(u"Volver"_s));
    QVERIFY(pulsa(u"Notas, 1 nota. Ver"_s));
    QVERIFY(seLee(u"leche"_s));
    tecla(Qt::Key_Escape);
    QVERIFY(seLee(u"Mis datos"_s));
    tecla(Qt::Key_Escape);
    QVERIFY(seLee(u"Devolver la copia al iPhone"_s) || Manos::nombres(*ventana).join(u' ').contains(u"copia"_s));
    QCOMPARE(programa->visor.vista(), VisorDeDatos::Ninguna);
    // Going elsewhere closes what was open.
    QVERIFY(pulsa(u"Ver mis datos"_s));
    tecla(Qt::Key_5, Qt::ControlModifier);
    QCOMPARE(programa->visor.vista(), VisorDeDatos::Ninguna);
    QVERIFY(seLee(u"Escribe arriba lo que buscas"_s));
}

void PruebaDatosEnVentana::sinNadaSacado()
{
    tecla(Qt::Key_4, Qt::ControlModifier);
    QVERIFY(pulsa(u"Ver mis datos"_s));
    // Nothing there yet: it is taken out at once. There is no engine beside this test, which ends it with words.
    QTRY_VERIFY(programa->modelo.tarea().terminada());
    QVERIFY(seLee(u"Todavía no has sacado nada"_s));
}

void PruebaDatosEnVentana::textosEnElChat()
{
    QByteArray chat;
    const auto hostiles = textosHostiles();
    for (const auto &texto : hostiles)
        chat += "[01/02/2026 10:00] <i>Ana</i>: " + texto.toUtf8() + '\n';
    pon(u"WhatsApp/Chats/<b>Ana.txt"_s, chat);
    programa->visor.verChats(datos() + u"/WhatsApp/Chats/<b>Ana.txt"_s);
    QTRY_COMPARE(programa->visor.property("conversaciones").value<Conversaciones *>()->cuantos(), hostiles.size());
    auto *mensajes = lista(u"Mensajes de <b>Ana"_s);
    QVERIFY(mensajes);
    for (int i = 0; i < hostiles.size(); ++i) {
        QVERIFY(lleva(mensajes, i));
        QVERIFY2(QTest::qWaitFor([&] { return conTexto(hostiles[i].trimmed()) != nullptr; }, 3000),
                 qPrintable(hostiles[i].left(60)));
        nadaEsMarcado();
    }
    QVERIFY(conTexto(u"<i>Ana</i>"_s));
    QVERIFY(conTexto(u"<b>Ana"_s));
}

void PruebaDatosEnVentana::textosEnLoDemas()
{
    const auto hostiles = textosHostiles();
    QByteArray tabla("Nombre;Apellidos;Empresa;Teléfono o correo\n");
    QByteArray notas("TUS NOTAS\n\n");
    ClavesListas claves;
    for (const auto &texto : hostiles) {
        tabla += "aguja " + QString(texto).replace(u';', u',').toUtf8() + ";x;y;z\n";
        notas += texto.toUtf8() + '\n';
        claves.claves.append({QUuid::createUuid(), u"internet"_s, texto, texto, texto});
    }
    pon(u"Contactos.csv"_s, tabla);
    pon(u"Notas.txt"_s, notas);
    const auto recorrer = [&](const QString &nombre, int antes, int filas,
                              const std::function<QString(int)> &esperado) {
        for (int i = 0; i < filas; ++i) {
            const auto texto = esperado(i);
            QVERIFY(lleva(lista(nombre), i + antes));
            QVERIFY2(QTest::qWaitFor([&] { return conTexto(texto) != nullptr; }, 3000), qPrintable(texto.left(60)));
            nadaEsMarcado();
        }
    };
    const auto cuantos = static_cast<int>(hostiles.size());
    programa->visor.verTabla(datos() + u"/Contactos.csv"_s);
    QTRY_COMPARE(programa->visor.property("tabla").value<TablaDeFichero *>()->total(), cuantos);
    recorrer(u"Contactos"_s, 0, cuantos, [&](int i) { return u"aguja "_s + QString(hostiles[i]).replace(u';', u','); });
    programa->visor.cerrar();
    programa->visor.verTexto(datos() + u"/Notas.txt"_s);
    QTRY_COMPARE(programa->visor.property("texto").value<TextoDeFichero *>()->cuantas(), cuantos + 2);
    recorrer(u"Notas"_s, 2, cuantos, [&](int i) { return hostiles[i]; });
    programa->visor.cerrar();
    tecla(Qt::Key_5, Qt::ControlModifier);
    programa->buscador.buscar(u"aguja"_s);
    QTRY_COMPARE(programa->buscador.cuantos(), 15);
    recorrer(u"Resultados"_s, 0, 15, [&](int i) { return programa->buscador.resultados()[i].extracto; });
    QVERIFY(pulsa(u"Contraseñas"_s));
    programa->contrasenas.aplicar(claves);
    for (int i = 0; i < cuantos; ++i)
        programa->contrasenas.ver(i, true);
    recorrer(u"Contraseñas"_s, 0, cuantos, [&](int i) { return hostiles[i]; });
}

void PruebaDatosEnVentana::buscarPorTeclado()
{
    pon(u"Mensajes/+34600.txt"_s, "[01/02/2026 10:00] +34600: el GATO de Ana\n");
    pon(u"Notas.txt"_s, "TUS NOTAS\n\nmi gato\n");
    tecla(Qt::Key_5, Qt::ControlModifier);
    QVERIFY(seLee(u"Escribe arriba lo que buscas"_s));
    Manos::escribir(*ventana, u"g"_s);
    tecla(Qt::Key_Return);
    QTest::qWait(100);
    QVERIFY(programa->buscador.buscado().isEmpty()); // one letter is no word
    Manos::escribir(*ventana, u"ato"_s);
    tecla(Qt::Key_Return);
    QVERIFY(seLee(u"Nota, En tus notas: mi gato"_s));
    QVERIFY(pulsa(u"Mensaje, +34600: [01/02/2026 10:00] +34600: el GATO de Ana"_s));
    QVERIFY(seLee(u"+34600: el GATO de Ana. 10:00"_s));
    tecla(Qt::Key_Escape);
    QVERIFY(pulsa(u"Nota, En tus notas: mi gato"_s));
    QVERIFY(seLee(u"TUS NOTAS"_s));
    tecla(Qt::Key_Escape);
    programa->buscador.buscar(u"perro"_s);
    QVERIFY(seLee(u"No he encontrado «perro»"_s));
}

void PruebaDatosEnVentana::guardarConElDialogo()
{
    pon(u"WhatsApp/Chats/Ana.txt"_s, "[01/02/2026 10:00] Ana: hola\n");
    programa->visor.verChats(datos() + u"/WhatsApp/Chats/Ana.txt"_s);
    const auto aceptar = [&](const QString &fichero) {
        QFileDialog *dialogo = nullptr;
        const bool hay = QTest::qWaitFor(
            [&] {
                for (auto *uno : QApplication::topLevelWidgets()) {
                    if (auto *suyo = qobject_cast<QFileDialog *>(uno); suyo && suyo->isVisible())
                        dialogo = suyo;
                }
                return dialogo != nullptr;
            },
            10'000);
        if (!hay)
            return QString();
        const auto ofrecido = QFileInfo(dialogo->selectedFiles().value(0)).fileName();
        dialogo->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(fichero);
        QMetaObject::invokeMethod(dialogo, "accept");
        return ofrecido;
    };
    QVERIFY(seLee(u"Ana: hola. 10:00"_s));
    const auto texto = QDir::homePath() + u"/fuera.txt"_s;
    QVERIFY(pulsa(u"Guardar"_s));
    QCOMPARE(aceptar(texto), u"Ana.txt"_s);
    QVERIFY(seLee(u"Guardado."_s));
    QCOMPARE(leerFichero(texto), QByteArray("[01/02/2026 10:00] Ana: hola\n"));
    const auto pdf = QDir::homePath() + u"/fuera.pdf"_s;
    QVERIFY(pulsa(u"PDF"_s));
    QCOMPARE(aceptar(pdf), u"Ana.pdf"_s);
    QVERIFY(seLee(u"PDF guardado con formato de chat."_s));
    QVERIFY(leerFichero(pdf).startsWith("%PDF"));
    QVERIFY(pulsa(u"Copiar"_s));
    QVERIFY(seLee(u"Conversación copiada. Pégala donde quieras."_s));
    QCOMPARE(QApplication::clipboard()->text(), u"01/02/2026 10:00 Ana: hola"_s);
}

void PruebaDatosEnVentana::contrasenasDeUnaEnUna()
{
    QVERIFY(pulsa(u"Contraseñas"_s));
    QVERIFY(seLee(u"Tus contraseñas guardadas"_s));
    programa->contrasenas.aplicar(
        ClavesListas{{{QUuid::createUuid(), u"wifi"_s, u"Casa"_s, {}, u"rosquillas"_s},
                      {QUuid::createUuid(), u"internet"_s, u"sitio.es"_s, u"ana"_s, u"zapatos42"_s}},
                     3});
    QVERIFY(seLee(u"Ojo: aquí se ven tus contraseñas de verdad. No lo enseñes por ahí."_s));
    QVERIFY(seLee(u"Hay 3 más que el iPhone no deja salir de él."_s));
    QVERIFY(!conTexto(u"rosquillas"_s) && !conTexto(u"zapatos42"_s));
    QVERIFY(pulsa(u"Verla: Casa"_s));
    QTRY_VERIFY(conTexto(u"rosquillas"_s));
    QVERIFY(!conTexto(u"zapatos42"_s));
    QVERIFY(pulsa(u"Ocultarla: Casa"_s));
    QTRY_VERIFY(!conTexto(u"rosquillas"_s));
    QVERIFY(pulsa(u"Webs"_s));
    QTRY_VERIFY(!conTexto(u"Casa"_s) && conTexto(u"sitio.es"_s));
    QVERIFY(pulsa(u"Copiarla: sitio.es"_s));
    QCOMPARE(QApplication::clipboard()->text(), u"zapatos42"_s);
    // Behind the lock nothing of it waits.
    // As on a computer that used to ask.
    Preferencias::ponLogico(u"comprobacionVista"_s, true);
    programa->cerradura.abrir();
    Preferencias::ponLogico(u"comprobacionVista"_s, false);
    QCOMPARE(programa->contrasenas.rowCount(), 0);
    QCOMPARE(programa->contrasenas.estado(), u"empezando"_s);
    for (const auto *uno : textos())
        QVERIFY(uno->property("text").toString() != u"zapatos42");
}

void PruebaDatosEnVentana::contactosPorTeclado()
{
    QVERIFY(
        escribirBase(datos() + u"/HomeDomain/Library/AddressBook/AddressBook.sqlitedb"_s,
                     "CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY, First, Last, Organization, Note, Nickname);"
                     "CREATE TABLE ABMultiValue (record_id INTEGER, property INTEGER, value TEXT);"
                     "INSERT INTO ABPerson VALUES (1,'Ana','<b>Ñandú</b>','Taller',NULL,NULL),"
                     "(2,'Zoe',NULL,NULL,NULL,NULL);"
                     "INSERT INTO ABMultiValue VALUES (1,3,'+34 600 000 000'),(1,4,'ana@ejemplo.es'),(2,3,'911');"));
    tecla(Qt::Key_9, Qt::ControlModifier);
    QVERIFY(seLee(u"Elige un contacto"_s));
    QVERIFY(pulsa(u"Ana <b>Ñandú</b>, +34 600 000 000"_s));
    QVERIFY(seLee(u"WhatsApp a +34 600 000 000"_s));
    QVERIFY(seLee(u"Correo a ana@ejemplo.es"_s));
    nadaEsMarcado();
    programa->contactos.ponBusqueda(u"600000"_s);
    QTRY_COMPARE(programa->contactos.rowCount(), 1);
    programa->contactos.ponBusqueda({});
    QVERIFY(pulsa(u"Editar"_s));
    QVERIFY(seLee(u"Editar contacto"_s));
    tecla(Qt::Key_Escape);
    QVERIFY(pulsa(u"Borrar"_s));
    QVERIFY(seLee(u"Borrar de la agenda del Mac"_s));
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"No hacer nada"_s);
    tecla(Qt::Key_Escape);
    QVERIFY(pulsa(u"Contacto nuevo"_s));
    QVERIFY(!Manos::control(*ventana, u"Guardar"_s)); // without a name or a company there is nothing to keep
    Manos::escribir(*ventana, u"Nueva"_s);
    QTRY_VERIFY(Manos::control(*ventana, u"Guardar"_s));
    tecla(Qt::Key_Return);
    QVERIFY(
        seLee(u"El Mac no me deja tocar los Contactos. Permíteselo en Ajustes del Sistema › Privacidad y seguridad › "
              "Contactos."_s));
    tecla(Qt::Key_Escape);
    QCOMPARE(programa->contactos.hoja(), Contactos::SinHoja);
}

void PruebaDatosEnVentana::todoTieneNombre()
{
    pon(u"WhatsApp/Chats/Ana.txt"_s, "[01/02/2026 10:00] Ana: hola gato\n");
    pon(u"Contactos.csv"_s, "Nombre;Apellidos;Empresa;Teléfono o correo\ngato;x;y;z\n");
    pon(u"Notas.txt"_s, "gato\n");
    const auto revisar = [this](const char *donde) {
        QTest::qWait(150);
        const auto mudos = Manos::sinNombre(*ventana);
        QVERIFY2(mudos.isEmpty(), qPrintable(QString::fromUtf8(donde) + u": "_s + mudos.join(u", "_s)));
    };
    programa->visor.verMisDatos();
    revisar("inventory");
    programa->visor.verChats(datos() + u"/WhatsApp/Chats/Ana.txt"_s);
    revisar("chats");
    programa->visor.verTabla(datos() + u"/Contactos.csv"_s);
    revisar("table");
    programa->visor.verTexto(datos() + u"/Notas.txt"_s);
    revisar("text");
    programa->visor.cerrar();
    tecla(Qt::Key_5, Qt::ControlModifier);
    programa->buscador.buscar(u"gato"_s);
    revisar("search");
    tecla(Qt::Key_9, Qt::ControlModifier);
    revisar("contacts");
    programa->contactos.abrirHoja(Contactos::Nuevo);
    revisar("new contact");
    tecla(Qt::Key_Escape);
    QVERIFY(pulsa(u"Contraseñas"_s));
    revisar("passwords");
    programa->contrasenas.aplicar(CopiaSinCifrar{});
    revisar("not encrypted");
    programa->contrasenas.aplicar(ClavesListas{{{QUuid::createUuid(), u"wifi"_s, u"Casa"_s, {}, u"x"_s}}, 0});
    revisar("list of passwords");
}

void PruebaDatosEnVentana::nadaSeCorta_data()
{
    QTest::addColumn<int>("ancho");
    for (const int ancho : {960, 1280, 1920})
        QTest::newRow(QByteArray::number(ancho).constData()) << ancho;
}

/// Buttons stay inside the window, whatever a name's length.
void PruebaDatosEnVentana::nadaSeCorta()
{
    QFETCH(const int, ancho);
    ventana->resize(ancho, 700);
    const auto largo = QString(120, u'W');
    pon(u"WhatsApp/Chats/"_s + largo + u".txt"_s,
        "[01/02/2026 10:00] " + largo.toUtf8() + ": " + largo.toUtf8() + '\n');
    programa->visor.verChats(datos() + u"/WhatsApp/Chats/"_s + largo + u".txt"_s);
    QTRY_VERIFY(conTexto(largo));
    programa->contrasenas.aplicar(ClavesListas{{{QUuid::createUuid(), u"wifi"_s, largo, largo, largo}}, 0});
    const auto dentro = [&](const char *donde) {
        QTest::qWait(100);
        for (auto *item : cosas()) {
            if (!item->isVisible() || item->property("apretado").isNull() || item->width() <= 0)
                continue;
            const auto caja = item->mapRectToScene(item->boundingRect());
            QVERIFY2(caja.left() >= -1 && caja.right() <= ventana->width() + 1,
                     qPrintable(QString::fromUtf8(donde) + u": "_s + item->property("nombre").toString().left(60)));
        }
    };
    dentro("chats");
    programa->visor.cerrar();
    QVERIFY(pulsa(u"Contraseñas"_s));
    dentro("passwords");
}

/// A quarter of a million messages: the end is in view at once, and any other place too.
void PruebaDatosEnVentana::chatLargo()
{
    QByteArray chat;
    for (int i = 0; i < 250'000; ++i)
        chat += "[01/02/2026 10:00] Ana: mensaje " + QByteArray::number(i) + (i % 7 == 0 ? " largo y más largo" : "") +
                '\n';
    pon(u"WhatsApp/Chats/Ana.txt"_s, chat);
    programa->visor.verChats(datos() + u"/WhatsApp/Chats/Ana.txt"_s);
    QVERIFY(QTest::qWaitFor([&] { return conTexto(u"mensaje 249999"_s) != nullptr; }, 20'000));
    auto *mensajes = lista(u"Mensajes de Ana"_s);
    QVERIFY(lleva(mensajes, 100'000));
    QVERIFY(QTest::qWaitFor([&] { return conTexto(u"mensaje 100001"_s) != nullptr; }, 3000));
    tecla(Qt::Key_Home);
    mensajes->forceActiveFocus();
    tecla(Qt::Key_Home);
    QVERIFY(QTest::qWaitFor([&] { return conTexto(u"mensaje 1"_s) != nullptr; }, 3000));
    tecla(Qt::Key_End);
    QVERIFY(QTest::qWaitFor([&] { return conTexto(u"mensaje 249999"_s) != nullptr; }, 3000));
    // Only what is in view, and a little more, exists.
    QVERIFY(textos().size() < 400);
}

QTEST_MAIN(PruebaDatosEnVentana)
#include "PruebaDatosEnVentana.moc"
