#include "extraction/Contactar.h"
#include "extraction/Conversaciones.h"
#include "extraction/MisDatos.h"
#include "extraction/TablaDeFichero.h"
#include "extraction/TextoDeFichero.h"
#include "support/BaseDePrueba.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// What stands behind the views of the result folder.
class PruebaVisor : public QObject
{
    Q_OBJECT

private slots:
    void init() { casa = std::make_unique<QTemporaryDir>(); }
    void chats();
    void chatQueSeVa();
    void copiarYGuardar();
    void pdf();
    void filasDeMensajes();
    void tabla();
    void ordenDeCeldas_data();
    void ordenDeCeldas();
    void texto();
    void inventario();
    void direcciones();

private:
    QString ruta(const QString &nombre) const { return casa->filePath(nombre); }
    void pon(const QString &nombre, const QByteArray &texto) const { QVERIFY(escribirFichero(ruta(nombre), texto)); }
    template <typename Lista> static QStringList columna(const Lista &lista, const QByteArray &papel)
    {
        QStringList valores;
        const auto cual = lista.roleNames().key(papel);
        for (int i = 0; i < lista.rowCount(); ++i)
            valores << lista.data(lista.index(i), cual).toString();
        return valores;
    }

    std::unique_ptr<QTemporaryDir> casa;
};

void PruebaVisor::chats()
{
    pon(u"chats/Ana.txt"_s, "[01/02/2026 10:00] Ana: hola\n");
    pon(u"chats/Zoe.txt"_s, "[01/02/2026 10:00] Zoe: a\n[01/02/2026 10:01] YO: b\n");
    pon(u"chats/Ángel.txt"_s, "");
    Conversaciones conversaciones;
    conversaciones.abrir(ruta(u"chats"_s), u"WhatsApp"_s);
    QCOMPARE(columna(conversaciones, "chat"), (QStringList{u"Ana"_s, u"Zoe"_s, u"Ángel"_s}));
    QCOMPARE(conversaciones.nombre(), u"Ana"_s); // the first is chosen by itself
    QTRY_COMPARE(conversaciones.cuantos(), 1);
    conversaciones.ponBusqueda(u"ÁNG"_s);
    QCOMPARE(columna(conversaciones, "chat"), QStringList{u"Ángel"_s});
    QCOMPARE(conversaciones.filaElegida(), -1); // it is still in view, and not in the list
    QCOMPARE(conversaciones.nombre(), u"Ana"_s);
    conversaciones.elegir(0);
    QTRY_VERIFY(!conversaciones.cargando());
    QCOMPARE(conversaciones.cuantos(), 0);
    conversaciones.ponBusqueda({});
    QCOMPARE(conversaciones.filaElegida(), 2);
    // By a file, as who comes from the search.
    conversaciones.abrir(ruta(u"chats"_s), u"WhatsApp"_s, ruta(u"chats/Zoe.txt"_s));
    QCOMPARE(conversaciones.nombre(), u"Zoe"_s);
    QTRY_COMPARE(conversaciones.cuantos(), 2);
    conversaciones.abrir(ruta(u"no está"_s), u"WhatsApp"_s);
    QVERIFY(conversaciones.vacia());
    QCOMPARE(conversaciones.cuantos(), 0);
}

/// A chat is read once, and a folder that was left brings nothing late into the next one.
void PruebaVisor::chatQueSeVa()
{
    pon(u"a/Ana.txt"_s, QByteArray("[01/02/2026 10:00] Ana: hola\n").repeated(50'000));
    pon(u"b/Zoe.txt"_s, "[01/02/2026 10:00] Zoe: a\n");
    Conversaciones conversaciones;
    conversaciones.abrir(ruta(u"a"_s), u"WhatsApp"_s);
    conversaciones.abrir(ruta(u"b"_s), u"WhatsApp"_s);
    QTRY_COMPARE(conversaciones.cuantos(), 1);
    QTest::qWait(200);
    QCOMPARE(conversaciones.cuantos(), 1);
    pon(u"b/Zoe.txt"_s, "[01/02/2026 10:00] Zoe: a\n[01/02/2026 10:00] Zoe: b\n");
    conversaciones.elegir(0);
    QCOMPARE(conversaciones.cuantos(), 1);
}

void PruebaVisor::copiarYGuardar()
{
    const QByteArray texto("[01/02/2026 10:00] Ana: hola\nsegunda\n[01/02/2026 10:01] YO: <b>adiós</b>");
    pon(u"chats/Ana.txt"_s, texto);
    Conversaciones conversaciones;
    conversaciones.abrir(ruta(u"chats"_s), u"WhatsApp"_s);
    QTRY_COMPARE(conversaciones.cuantos(), 2);
    conversaciones.copiarChat();
    QTRY_COMPARE(conversaciones.mensaje(), u"Conversación copiada. Pégala donde quieras."_s);
    QCOMPARE(QGuiApplication::clipboard()->text(),
             u"01/02/2026 10:00 Ana: hola\nsegunda\n01/02/2026 10:01 Yo: <b>adiós</b>"_s);
    conversaciones.guardarChat(ruta(u"copia.txt"_s));
    QTRY_COMPARE(conversaciones.mensaje(), u"Guardado."_s);
    QCOMPARE(leerFichero(ruta(u"copia.txt"_s)), texto);
    // Onto itself: it must not be emptied first.
    conversaciones.copiarChat();
    QTRY_VERIFY(conversaciones.mensaje() != u"Guardado."_s);
    conversaciones.guardarChat(ruta(u"chats/Ana.txt"_s));
    QTRY_COMPARE(conversaciones.mensaje(), u"Guardado."_s);
    QCOMPARE(leerFichero(ruta(u"chats/Ana.txt"_s)), texto);
    conversaciones.guardarChat(ruta(u"no/está/copia.txt"_s));
    QTRY_COMPARE(conversaciones.mensaje(), u"No se pudo guardar."_s);
}

void PruebaVisor::pdf()
{
    pon(u"chats/Ana.txt"_s, "[01/02/2026 10:00] Ana: hola\n");
    Conversaciones conversaciones;
    conversaciones.abrir(ruta(u"chats"_s), u"WhatsApp"_s);
    QTRY_COMPARE(conversaciones.cuantos(), 1);
    QSignalSpy hecho(&conversaciones, &Conversaciones::pdfHecho);
    conversaciones.exportarPDF();
    QVERIFY(conversaciones.haciendoPdf());
    QVERIFY(hecho.wait(20'000));
    conversaciones.guardarPdf(ruta(u"no/está.pdf"_s));
    QTRY_COMPARE(conversaciones.mensaje(), u"No pude guardar el PDF."_s);
    conversaciones.exportarPDF();
    QVERIFY(hecho.wait(20'000));
    conversaciones.guardarPdf(ruta(u"Ana.pdf"_s));
    QTRY_COMPARE(conversaciones.mensaje(), u"PDF guardado con formato de chat."_s);
    QVERIFY(leerFichero(ruta(u"Ana.pdf"_s)).startsWith("%PDF"));
}

void PruebaVisor::filasDeMensajes()
{
    ModeloDeMensajes filas;
    filas.poner(Mensajes::deTexto("[01/02/2026 10:00] Ana: a\n[01/02/2026 11:00] YO: b\n[02/02/2026 11:00] Ana: c\n[] "
                                  "Zoe: d\n[rara] Ana: e\n"));
    QCOMPARE(columna(filas, "dia"), (QStringList{u"01/02/2026"_s, {}, u"02/02/2026"_s, {}, u"rara"_s}));
    QCOMPARE(columna(filas, "hora"), (QStringList{u"10:00"_s, u"11:00"_s, u"11:00"_s, {}, u"rara"_s}));
    const auto tonos = columna(filas, "tono");
    QCOMPARE(tonos[0], tonos[2]); // somebody keeps his colour
    QVERIFY(tonos[3].toInt() < ModeloDeMensajes::colores);
}

void PruebaVisor::tabla()
{
    pon(u"Llamadas.csv"_s, "Número;Fecha;Sentido;Duración\n+34600;02/01/2026 10:00;Entrante;9\n"
                           "911;01/02/2026 09:00;Saliente;100\n;15/12/2025 23:59;Entrante;20\n"
                           "912;01/01/2026 00:00;con ; de más;1\nsola\n");
    TablaDeFichero tabla;
    tabla.abrir(ruta(u"Llamadas.csv"_s));
    QTRY_COMPARE(tabla.total(), 5);
    QCOMPARE(tabla.nombre(), u"Llamadas"_s);
    QCOMPARE(tabla.columnas(), (QStringList{u"Número"_s, u"Fecha"_s, u"Sentido"_s, u"Duración"_s}));
    const auto fila = [&](int cual) {
        return tabla.data(tabla.index(cual), TablaDeFichero::PapelCeldas).toStringList();
    };
    QCOMPARE(fila(3).last(), u" de más;1"_s); // nothing of a line is lost
    tabla.ordenarPor(1);
    QCOMPARE(fila(1).value(1), u"15/12/2025 23:59"_s); // after the row that has no date
    QCOMPARE(fila(4).value(1), u"01/02/2026 09:00"_s);
    tabla.ordenarPor(1);
    QCOMPARE(fila(0).value(1), u"01/02/2026 09:00"_s);
    tabla.ordenarPor(1);
    QCOMPARE(fila(0).value(0), u"+34600"_s);
    tabla.ordenarPor(3);
    QCOMPARE(fila(2).value(3), u"9"_s);
    QCOMPARE(fila(4).value(3), u"100"_s);
    tabla.ponBusqueda(u"ENTRANTE"_s);
    QCOMPARE(tabla.visibles(), 2);
    tabla.abrir(ruta(u"no está.csv"_s));
    QTRY_VERIFY(!tabla.cargando());
    QCOMPARE(tabla.total(), 0);
}

void PruebaVisor::ordenDeCeldas_data()
{
    QTest::addColumn<QString>("menor");
    QTest::addColumn<QString>("mayor");
    QTest::newRow("dates by their year") << u"31/12/2025 23:59"_s << u"01/01/2026 00:00"_s;
    QTest::newRow("days") << u"09/01/2026"_s << u"10/01/2026"_s;
    QTest::newRow("numbers by their value") << u"9"_s << u"10"_s;
    QTest::newRow("great numbers") << u"999999999"_s << u"1000000000000"_s;
}

void PruebaVisor::ordenDeCeldas()
{
    QFETCH(const QString, menor);
    QFETCH(const QString, mayor);
    QVERIFY(claveDeOrden(menor) < claveDeOrden(mayor));
}

void PruebaVisor::texto()
{
    pon(u"Notas.txt"_s, "TUS NOTAS\n\n── una\n<b>dos</b>\n\xff");
    TextoDeFichero texto;
    texto.abrir(ruta(u"Notas.txt"_s));
    QTRY_COMPARE(texto.cuantas(), 5);
    QCOMPARE(columna(texto, "texto"), (QStringList{u"TUS NOTAS"_s, {}, u"── una"_s, u"<b>dos</b>"_s, u"\uFFFD"_s}));
}

void PruebaVisor::inventario()
{
    pon(u"WhatsApp/Chats/Ana.txt"_s, "x");
    pon(u"WhatsApp/Chats/Zoe.txt"_s, "x");
    pon(u"Contactos.csv"_s, "Nombre;Apellidos\nAna;Ñ\n");
    pon(u"Notas.txt"_s, "TUS NOTAS\n\n── una  (x)\ncuerpo\n\n── dos  (x)\n\n\n");
    pon(u"Recordatorios.txt"_s, "TUS RECORDATORIOS\n\n[hecho] a   x\n[    ] b   x\n[    ] c   x\n");
    pon(u"Llamadas.csv"_s, "Número;Fecha\n"); // a heading alone is nothing
    pon(u"Grabadora/a.m4a"_s, QByteArray(200'000, 'x'));
    MisDatos datos;
    datos.mirar(casa->path());
    QTRY_VERIFY(!datos.mirando());
    QCOMPARE(columna(datos, "titulo"),
             (QStringList{u"WhatsApp"_s, u"Contactos"_s, u"Notas"_s, u"Recordatorios"_s, u"Grabadora"_s}));
    QCOMPARE(columna(datos, "cuenta"),
             (QStringList{u"2 chats"_s, u"1 fila"_s, u"2 notas"_s, u"3 recordatorios"_s, u"1 grabación"_s}));
    QCOMPARE(columna(datos, "tamano").last(), u"0,2 MB"_s);
    datos.mirar(ruta(u"no está"_s));
    QTRY_VERIFY(!datos.mirando());
    QCOMPARE(datos.cuantos(), 0);
}

void PruebaVisor::direcciones()
{
    using namespace Contactar;
    QCOMPARE(direccionDeLlamada(u"+34 600-000 000 (casa)"_s), QUrl(u"tel:+34600000000"_s));
    QCOMPARE(direccionDeMensaje(u"600 000"_s), QUrl(u"sms:600000"_s));
    QCOMPARE(direccionDeFaceTime(u"600"_s), QUrl(u"facetime:600"_s));
    QCOMPARE(direccionDeWhatsApp(u"+34 600 000 000"_s, true), QUrl(u"whatsapp://send?phone=34600000000"_s));
    QVERIFY(direccionDeWhatsApp(u"+34 600 000 000"_s, false).toString().endsWith(u"/34600000000"_s));
    QCOMPARE(direccionDeCorreo(u"ana@ejemplo.es"_s).toString(QUrl::FullyEncoded), u"mailto:ana@ejemplo.es"_s);
    // What is written as an address stays one address, and adds nothing to it.
    const auto raro = direccionDeCorreo(u"a@b.es?cc=otro@c.es&body=x"_s);
    QVERIFY(!raro.hasQuery());
    QCOMPARE(raro.scheme(), u"mailto"_s);
}

QTEST_MAIN(PruebaVisor)
#include "PruebaVisor.moc"
