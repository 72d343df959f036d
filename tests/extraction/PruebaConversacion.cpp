#include "extraction/Conversacion.h"
#include "extraction/Textos.h"
#include "support/BaseDePrueba.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

class PruebaConversacion : public QObject
{
    Q_OBJECT

private slots:
    void lineas_data();
    void lineas();
    void muchas();
    void ficheros();
    void pagina();
    void sinConversaciones();
    void recortes();
};

void PruebaConversacion::lineas_data()
{
    QTest::addColumn<QByteArray>("texto");
    QTest::addColumn<QList<Mensaje>>("esperados");
    const auto cuando = u"01/02/2026 10:00"_s;
    const QByteArray fecha("[01/02/2026 10:00] ");
    QTest::newRow("one of each") << QByteArray(fecha + "Ana: hola\n" + fecha + "YO: qué tal")
                                 << QList<Mensaje>{{false, u"Ana"_s, cuando, u"hola"_s},
                                                   {true, {}, cuando, u"qué tal"_s}};
    QTest::newRow("goes on, empty lines left out") << QByteArray(fecha + "Ana: uno\n\ndos\n  tres \n")
                                                   << QList<Mensaje>{{false, u"Ana"_s, cuando, u"uno\ndos\n  tres "_s}};
    QTest::newRow("goes on indented, as it is written")
        << QByteArray(fecha + "Ana: uno\n    [x] YO: dos\n      tres")
        << QList<Mensaje>{{false, u"Ana"_s, cuando, u"uno\n[x] YO: dos\n  tres"_s}};
    QTest::newRow("goes on from nothing")
        << QByteArray("suelta\n" + fecha + "Ana: a") << QList<Mensaje>{{false, u"Ana"_s, cuando, u"a"_s}};
    QTest::newRow("no date") << QByteArray("[] Ana: a") << QList<Mensaje>{{false, u"Ana"_s, {}, u"a"_s}};
    QTest::newRow("a name with a colon") << QByteArray(fecha + "Ana: trabajo: hola")
                                         << QList<Mensaje>{{false, u"Ana"_s, cuando, u"trabajo: hola"_s}};
    QTest::newRow("no colon") << QByteArray(fecha + " aviso ") << QList<Mensaje>{{false, {}, cuando, u"aviso"_s}};
    QTest::newRow("somebody else's YO:") << QByteArray(fecha + "Ana: ] YO: no soy yo")
                                         << QList<Mensaje>{{false, u"Ana"_s, cuando, u"] YO: no soy yo"_s}};
    QTest::newRow("own, with colons") << QByteArray(fecha + "YO: a: b")
                                      << QList<Mensaje>{{true, {}, cuando, u"a: b"_s}};
    QTest::newRow("a text that looks like a message")
        << QByteArray(fecha + "Ana: a\n[x] b")
        << QList<Mensaje>{{false, u"Ana"_s, cuando, u"a"_s}, {false, {}, u"x"_s, u"b"_s}};
    QTest::newRow("brackets") << QByteArray("[sin cierre\n][\n[]\n") << QList<Mensaje>{{false, {}, {}, {}}};
    QTest::newRow("bytes that are no text")
        << QByteArray(fecha + "A\xff: \xc3") << QList<Mensaje>{{false, u"A\uFFFD"_s, cuando, u"\uFFFD"_s}};
    QTest::newRow("nothing") << QByteArray() << QList<Mensaje>{};
    QTest::newRow("line feeds") << QByteArray("\n\n\n") << QList<Mensaje>{};
}

void PruebaConversacion::lineas()
{
    QFETCH(const QByteArray, texto);
    QFETCH(const QList<Mensaje>, esperados);
    const auto leidos = Mensajes::deTexto(texto);
    QCOMPARE(leidos.cuantos(), esperados.size());
    for (qsizetype i = 0; i < esperados.size(); ++i) {
        QCOMPARE(leidos.mensaje(i).mio, esperados[i].mio);
        QCOMPARE(leidos.mensaje(i).quien, esperados[i].quien);
        QCOMPARE(leidos.mensaje(i).cuando, esperados[i].cuando);
        QCOMPARE(leidos.mensaje(i).texto, esperados[i].texto);
        QCOMPARE(leidos.dia(i), esperados[i].cuando.left(10));
    }
}

void PruebaConversacion::muchas()
{
    QByteArray texto;
    for (int i = 0; i < 250'000; ++i)
        texto += "[01/02/2026 10:00] " + QByteArray(i % 3 == 0 ? "YO" : "Ana") + ": " + QByteArray::number(i) + '\n';
    const auto leidos = Mensajes::deTexto(texto);
    QCOMPARE(leidos.cuantos(), 250'000);
    QCOMPARE(leidos.mensaje(249'999).texto, u"249999"_s);
    QVERIFY(leidos.mensaje(249'999).mio);
}

void PruebaConversacion::ficheros()
{
    const QTemporaryDir casa;
    QVERIFY(Mensajes::leer(casa.filePath(u"nada"_s)).cuantos() == 0);
    QVERIFY(Mensajes::leer(casa.path()).cuantos() == 0);
    for (const auto *nombre : {"b.txt", "a.txt", "É.txt", ".txt", "c.TXT", "d.txt.bak", "a b;c.txt"})
        QVERIFY(escribirFichero(casa.filePath(QString::fromUtf8(nombre)), "[x] Ana: a"));
    QStringList nombres;
    for (const auto &fichero : ficherosDeTexto(casa.path()))
        nombres << nombreDeChat(fichero);
    QCOMPARE(nombres, (QStringList{u""_s, u"a b;c"_s, u"a"_s, u"b"_s, u"É"_s}));
    QVERIFY(ficherosDeTexto(casa.filePath(u"nada"_s)).isEmpty());
}

void PruebaConversacion::pagina()
{
    const QTemporaryDir casa;
    const auto desde = casa.path();
    QVERIFY(escribirFichero(desde + u"/Mensajes/+34 600.txt"_s,
                            "[01/02/2026 10:00] +34 600: <b>hola</b>\n    segunda & más"));
    QVERIFY(escribirFichero(desde + u"/WhatsApp/Chats/Zoe <3.txt"_s,
                            "[01/02/2026 10:00] Zoe: colado ] YO: x\n\n[02/02/2026 11:00] YO: adiós "));
    QVERIFY(escribirFichero(desde + u"/WhatsApp/Chats/Ana.txt"_s, "\xff\n"));
    QCOMPARE(Extraccion::chatsEnPagina(desde), u"Conversaciones: 3 chats en una página (Mis conversaciones.html)"_s);
    const auto pagina = QString::fromUtf8(leerFichero(desde + u"/Mis conversaciones.html"_s));
    const auto cuerpo = pagina.mid(pagina.indexOf("<main>"_L1));
    QCOMPARE(cuerpo, uR"(<main>
<h2>WhatsApp</h2>
<details class="chat" open><summary>Ana</summary>
<div class="linea "><span class="burbuja">)"_s +
                         QChar(QChar::ReplacementCharacter) + uR"(<span class="cuando"></span></span></div>
</details>
<details class="chat" open><summary>Zoe &lt;3</summary>
<div class="linea "><span class="burbuja">Zoe: colado ] YO: x<span class="cuando">01/02/2026 10:00</span></span></div>
<div class="linea yo"><span class="burbuja">YO: adiós<span class="cuando">02/02/2026 11:00</span></span></div>
</details>
<h2>Mensajes</h2>
<details class="chat" open><summary>+34 600</summary>
<div class="linea "><span class="burbuja">+34 600: &lt;b&gt;hola&lt;/b&gt;<br>segunda &amp; más<span class="cuando">01/02/2026 10:00</span></span></div>
</details>
</main>
</body>
</html>
)"_s);
}

void PruebaConversacion::sinConversaciones()
{
    const QTemporaryDir casa;
    QVERIFY(QDir(casa.path()).mkpath(u"Mensajes"_s));
    QVERIFY(!Extraccion::chatsEnPagina(casa.path()));
    QVERIFY(QDir(casa.path()).entryList(QDir::Files | QDir::Hidden).isEmpty());
    QVERIFY(!Extraccion::chatsEnPagina(casa.filePath(u"no/está"_s)));
}

void PruebaConversacion::recortes()
{
    QCOMPARE(recortar(u"corto"_s, 120), u"corto"_s);
    QCOMPARE(recortar(u"x"_s.repeated(300), 120).size(), 120);
    QCOMPARE(recortar(u"👨‍👩‍👧"_s.repeated(3), 2), u"👨‍👩‍👧"_s.repeated(2));
    QCOMPARE(recortar(u"e\u0301"_s.repeated(3), 3), u"e\u0301"_s.repeated(3));
}

QTEST_GUILESS_MAIN(PruebaConversacion)
#include "PruebaConversacion.moc"
