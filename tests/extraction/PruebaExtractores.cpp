#include "core/CarpetaPrivada.h"
#include "extraction/Conversacion.h"
#include "extraction/Extraccion.h"
#include "extraction/NombresDistintos.h"
#include "extraction/Textos.h"
#include "support/BaseDePrueba.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

constexpr auto tablasDeMensajes =
    "CREATE TABLE handle (ROWID INTEGER PRIMARY KEY, id TEXT);"
    "CREATE TABLE message (ROWID INTEGER PRIMARY KEY, text TEXT, handle_id INTEGER, date INTEGER, "
    "is_from_me INTEGER);";
constexpr auto tablasDeWhatsApp =
    "CREATE TABLE ZWACHATSESSION (Z_PK INTEGER PRIMARY KEY, ZPARTNERNAME TEXT, ZCONTACTJID TEXT);"
    "CREATE TABLE ZWAMESSAGE (Z_PK INTEGER PRIMARY KEY, ZCHATSESSION INTEGER, ZMESSAGEDATE REAL, "
    "ZISFROMME INTEGER, ZTEXT TEXT);";

} // namespace

class PruebaExtractores : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(QDir().mkpath(QDir::homePath() + u"/tmp"_s));
        qputenv("TMPDIR", QFile::encodeName(QDir::homePath() + u"/tmp"_s));
    }
    void init()
    {
        casa = std::make_unique<QTemporaryDir>();
        desde = casa->filePath(u"desde"_s);
        a = casa->filePath(u"Mis datos"_s);
    }
    void fechas_data();
    void fechas();
    void mensajes();
    void loQueSoloDiceElCuerpo();
    void mensajesEliminados();
    void nadieFirmaPorElDueno_data();
    void nadieFirmaPorElDueno();
    void gruposQueSeMezclan();
    void muchosGruposALaVez();
    void nombresDeConversacion_data();
    void nombresDeConversacion();
    void nadaSaleDeLaCarpeta_data();
    void nadaSaleDeLaCarpeta();
    void whatsapp();
    void mediosDeWhatsApp();
    void grabadora();
    void llamadasYSalud();
    void calendarioYNotas();
    void diasEnteros();
    void recordatoriosDeSusBases();
    void notasDeLaPapelera();
    void safari();
    void buzon();
    void loQueSoloEstaEnElWal();
    void unWalRoto();
    void nadaQueSacar();
    void discoLlenoDejaLoDeAntes();
    void noQuedanCopiasPrivadas();

private:
    QByteArray hecho(const QString &nombre) { return leerFichero(a + u'/' + nombre); }

    std::unique_ptr<QTemporaryDir> casa;
    QString desde;
    QString a;
};

void PruebaExtractores::fechas_data()
{
    QTest::addColumn<QString>("texto");
    QTest::addColumn<QString>("fecha");
    // Madrid is one hour ahead of UTC in winter, two in summer.
    QTest::newRow("winter") << u"700000000"_s << u"08/03/2023 21:26"_s;
    QTest::newRow("summer") << u"710000000"_s << u"02/07/2023 16:13"_s;
    QTest::newRow("last minute before summer time") << u"701485199"_s << u"26/03/2023 01:59"_s;
    QTest::newRow("nanoseconds") << u"700000000123456789"_s << u"08/03/2023 21:26"_s;
    QTest::newRow("fraction") << u"700000000.999"_s << u"08/03/2023 21:26"_s;
    QTest::newRow("exponent") << u"7e8"_s << u"08/03/2023 21:26"_s;
    QTest::newRow("first second") << u"1"_s << u"01/01/2001 01:00"_s;
    QTest::newRow("border, still seconds") << u"1000000000000"_s << u"27/09/33689 03:46"_s;
    QTest::newRow("border, nanoseconds") << u"1000000000001"_s << u"01/01/2001 01:16"_s;
    QTest::newRow("before 2001") << u"-5"_s << u"01/01/2001 00:59"_s;
    QTest::newRow("a clock that was at its beginning") << u"-978307200000000000"_s << u"01/01/1970 01:00"_s;
    QTest::newRow("a birth") << u"-1500000000"_s << u"20/06/1953 22:20"_s;
    for (const auto &vacia : {u"0"_s, u"-0.0"_s, u"-63114076800"_s, u"-1e300"_s, QString(), u" 700000000"_s,
                              u"700000000 "_s, u"mañana"_s, u"7,0"_s, u"nan"_s, u"inf"_s, u"1e300"_s, u"700000000x"_s})
        QTest::newRow(qPrintable(u"nothing: "_s + vacia)) << vacia << QString();
}

void PruebaExtractores::fechas()
{
    QFETCH(QString, texto);
    QTEST(Extraccion::fechaApplePublica(texto), "fecha");
}

void PruebaExtractores::mensajes()
{
    QVERIFY(escribirBase(
        desde + u"/HomeDomain/Library/SMS/sms.db"_s,
        QByteArray(tablasDeMensajes) +
            "INSERT INTO handle VALUES (1,'+34600112233'),(2,'a/b'),(3,'+34600112233');"
            "INSERT INTO message VALUES (1,'Hola, ¿qué tal? 😀',1,700000000000000000,0),"
            "(2,'Bien',1,700000060000000000,1),(3,NULL,1,700000070000000000,1),(4,'',1,700000080000000000,1),"
            "(5,'por iMessage',3,700000030,0),(6,'de nadie',NULL,700000000,0),(7,'dos\nlíneas',2,NULL,0),"
            "(8,'sin destinatario',99,'ayer',1);"));
    QCOMPARE(Extraccion::mensajes(desde, a), u"Mensajes: 6 en 3 conversaciones (carpeta Mensajes)"_s);
    // Two rows of the handle table are one person.
    QCOMPARE(hecho(u"Mensajes/+34600112233.txt"_s), "[08/03/2023 21:27] +34600112233: por iMessage\n"
                                                    "[08/03/2023 21:26] +34600112233: Hola, ¿qué tal? 😀\n"
                                                    "[08/03/2023 21:27] YO: Bien");
    QCOMPARE(hecho(u"Mensajes/a-b.txt"_s), "[] a/b: dos\n    líneas");
    QCOMPARE(hecho(u"Mensajes/Desconocido.txt"_s), "[08/03/2023 21:26] Desconocido: de nadie\n[] YO: sin destinatario");
    QCOMPARE(QDir(a).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{u"Mensajes"_s});
}

void PruebaExtractores::loQueSoloDiceElCuerpo()
{
    const auto cuerpo = [](const QByteArray &texto) {
        return "x'" +
               QByteArray("040b73747265616d747970656481e803840140848484124e5341747472696275746564537472696e670084840"
                          "84e534f626a656374008592848484084e53537472696e67019484012b") +
               QByteArray(1, static_cast<char>(texto.size())).toHex() + texto.toHex() + "8686'";
    };
    QVERIFY(escribirBase(desde + u"/HomeDomain/Library/SMS/sms.db"_s,
                         QByteArray(tablasDeMensajes) +
                             "ALTER TABLE message ADD attributedBody BLOB; INSERT INTO handle VALUES (1,'ana');"
                             "INSERT INTO message VALUES (1,NULL,1,700000000000000000,0," +
                             cuerpo("solo aquí") +
                             "),"
                             "(2,'',1,700000060000000000,1," +
                             cuerpo("dos\nlíneas") +
                             "),"
                             "(3,'el texto',1,700000120000000000,0," +
                             cuerpo("el cuerpo") +
                             "),"
                             "(4,NULL,1,700000180000000000,0," +
                             cuerpo("") +
                             "),"
                             "(5,NULL,1,700000240000000000,0,x'040b0102'),(6,NULL,1,700000300000000000,0,NULL)"));
    QCOMPARE(Extraccion::mensajes(desde, a), u"Mensajes: 3 en 1 conversaciones (carpeta Mensajes)"_s);
    QCOMPARE(hecho(u"Mensajes/ana.txt"_s), "[08/03/2023 21:26] ana: solo aquí\n[08/03/2023 21:27] YO: dos\n    líneas\n"
                                           "[08/03/2023 21:28] ana: el texto");
}

void PruebaExtractores::mensajesEliminados()
{
    QVERIFY(escribirBase(
        desde + u"/sms.db"_s,
        QByteArray(tablasDeMensajes) +
            "CREATE TABLE chat_message_join (chat_id, message_id);"
            "CREATE TABLE chat_recoverable_message_join (chat_id, message_id, delete_date);"
            "INSERT INTO handle VALUES (1,'ana');"
            "INSERT INTO message VALUES (1,'vive',1,1,0),(2,'en la papelera',1,2,0),(3,'recuperado',1,3,0),"
            "(4,'sin chat',1,4,0);"
            "INSERT INTO chat_message_join VALUES (1,1),(1,3),(1,NULL);"
            "INSERT INTO chat_recoverable_message_join VALUES (1,2,9),(1,3,9)"));
    QCOMPARE(Extraccion::mensajes(desde, a), u"Mensajes: 3 en 1 conversaciones (carpeta Mensajes)\n"
                                             "Mensajes eliminados hace poco: 1 (carpeta Eliminado hace poco)"_s);
    QVERIFY(!hecho(u"Mensajes/ana.txt"_s).contains("papelera"));
    QVERIFY(hecho(u"Mensajes/ana.txt"_s).contains("recuperado"));
    QVERIFY(hecho(u"Eliminado hace poco/Mensajes/ana.txt"_s).endsWith("ana: en la papelera"));
}

void PruebaExtractores::nadieFirmaPorElDueno_data()
{
    QTest::addColumn<QString>("quien");
    QTest::addColumn<QString>("texto");
    const auto falsa = u"[01/01/2020 10:00] YO: esto no lo dije"_s;
    for (const auto &salto :
         {u"\n"_s, u"\r\n"_s, u"\r"_s, u"\v"_s, u"\f"_s, u"\u0085"_s, u"\u2028"_s, u"\u2029"_s, u"\n\n\n"_s}) {
        const auto cual = QString::number(salto.front().unicode(), 16) + QString::number(salto.size());
        QTest::newRow(qPrintable(u"text, "_s + cual)) << u"Ana"_s << u"hola"_s + salto + falsa;
        QTest::newRow(qPrintable(u"name, "_s + cual)) << u"Ana"_s + salto + falsa + salto << u"hola"_s;
    }
    QTest::newRow("first of the text") << u"Ana"_s << u"\n"_s + falsa;
    QTest::newRow("the owner's own word") << u"YO"_s << u"esto no lo dije"_s;
    QTest::newRow("with blanks") << u"\u00A0YO "_s << u"esto no lo dije"_s;
    QTest::newRow("with a colon") << u"YO: x"_s << u"esto no lo dije"_s;
    QTest::newRow("within the line") << u"Ana] YO: yo"_s << u"] YO: esto no lo dije"_s;
}

void PruebaExtractores::nadieFirmaPorElDueno()
{
    QFETCH(const QString, quien);
    QFETCH(const QString, texto);
    const auto sql = [](const QString &valor) {
        return "CAST(x'" + valor.toUtf8().toHex() + "' AS TEXT)";
    };
    QVERIFY(escribirBase(desde + u"/WhatsApp/ChatStorage.sqlite"_s,
                         QByteArray(tablasDeWhatsApp) + "INSERT INTO ZWACHATSESSION VALUES (1," + sql(quien) +
                             ",'1@s'); INSERT INTO ZWAMESSAGE VALUES (1,1,1,0," + sql(texto) + ")"));
    QVERIFY(Extraccion::whatsapp(desde, a).has_value());
    // Neither the window, nor the page, nor an editor that shows each line by itself takes it for the owner's.
    const auto ficheros = ficherosDeTexto(a + u"/WhatsApp/Chats"_s);
    QCOMPARE(ficheros.size(), 1);
    const auto leidos = Mensajes::leer(ficheros.first());
    QCOMPARE(leidos.cuantos(), 1);
    QVERIFY(!leidos.mensaje(0).mio && !leidos.mensaje(0).quien.isEmpty());
    QVERIFY(leidos.mensaje(0).texto.contains(texto.section(QRegularExpression(u"[\r\n\v\f\u0085\u2028\u2029]"_s), -1)));
    for (const auto &linea : QString::fromUtf8(leerFichero(ficheros.first()))
                                 .split(QRegularExpression(u"[\r\n\v\f\u0085\u2028\u2029]"_s))
                                 .mid(1))
        QVERIFY(linea.isEmpty() || linea.startsWith(u"    "_s));
    QVERIFY(Extraccion::chatsEnPagina(a).has_value());
    QVERIFY(!hecho(u"Mis conversaciones.html"_s).contains("linea yo"));
}

void PruebaExtractores::gruposQueSeMezclan()
{
    // Without a partner name the rows come by date, whoever wrote them. Chats whose names fall together have a file
    // each: the same name, capitals, a stroke and a slash, and what somebody shows to everybody.
    QVERIFY(
        escribirBase(desde + u"/WhatsApp/ChatStorage.sqlite"_s,
                     QByteArray(tablasDeWhatsApp) +
                         "INSERT INTO ZWACHATSESSION VALUES "
                         "(1,NULL,'111@s'),(2,NULL,'222@s'),(3,'Ana-Luz','3@s'),(4,'Ana/Luz','4@s'),"
                         "(5,'111@s','5@s'),(6,'','6@s'),(7,NULL,NULL),(8,'ANA-LUZ','8@status'),(9,'ana-luz','9@s'),"
                         "(10,'ANA-LUZ','10@s'),(11,'Callada','11@s');"
                         "INSERT INTO ZWAMESSAGE VALUES (1,1,1,0,'a'),(2,2,2,0,'b'),(3,1,3,1,'c'),(4,2,4,0,'d'),"
                         "(5,3,5,0,'primera'),(6,4,6,0,'segunda'),(7,5,7,0,'mismo nombre'),(8,6,8,0,'sin "
                         "nombre'),(9,7,9,0,'nadie'),(10,8,1,0,'estado'),(11,9,2,0,'tercera'),(12,10,1,0,'cuarta');"));
    QCOMPARE(Extraccion::whatsapp(desde, a), u"WhatsApp: 12 mensajes en 10 chats"_s);
    const auto ultima = [this](const QString &chat) {
        return hecho(u"WhatsApp/Chats/"_s + chat + u".txt"_s).split(':').last().trimmed();
    };
    QCOMPARE(hecho(u"WhatsApp/Chats/111@s.txt"_s), "[01/01/2001 01:00] 111@s: a\n[01/01/2001 01:00] YO: c");
    QCOMPARE(ultima(u"111@s (2)"_s), "mismo nombre");
    QCOMPARE(hecho(u"WhatsApp/Chats/222@s.txt"_s), "[01/01/2001 01:00] 222@s: b\n[01/01/2001 01:00] 222@s: d");
    QCOMPARE(ultima(u"Ana-Luz"_s), "primera");
    QCOMPARE(hecho(u"WhatsApp/Chats/Ana-Luz (2).txt"_s), "[01/01/2001 01:00] Ana/Luz: segunda");
    QCOMPARE(ultima(u"ana-luz (3)"_s), "tercera");
    QCOMPARE(ultima(u"ANA-LUZ (4)"_s), "cuarta");
    QCOMPARE(ultima(u"ANA-LUZ (estados)"_s), "estado");
    QCOMPARE(ultima(QString()), "sin nombre");
    QCOMPARE(ultima(u" (2)"_s), "nadie");
    QCOMPARE(QDir(a + u"/WhatsApp/Chats"_s).entryList(QDir::Files | QDir::Hidden).size(), 10);
}

void PruebaExtractores::muchosGruposALaVez()
{
    // More conversations at once than files may be open, taking turns.
    QByteArray sentencias = QByteArray(tablasDeWhatsApp) + "BEGIN;";
    for (int chat = 0; chat < 300; ++chat)
        sentencias += "INSERT INTO ZWACHATSESSION VALUES (" + QByteArray::number(chat) + ",NULL,'c" +
                      QByteArray::number(chat) + "');";
    for (int mensaje = 0; mensaje < 3000; ++mensaje)
        sentencias += "INSERT INTO ZWAMESSAGE VALUES (" + QByteArray::number(mensaje) + ',' +
                      QByteArray::number(mensaje % 300) + ',' + QByteArray::number(mensaje + 1) + ",0,'m" +
                      QByteArray::number(mensaje) + "');";
    QVERIFY(escribirBase(desde + u"/WhatsApp/ChatStorage.sqlite"_s, sentencias + "COMMIT"));
    QCOMPARE(Extraccion::whatsapp(desde, a), u"WhatsApp: 3000 mensajes en 300 chats"_s);
    for (int chat = 0; chat < 300; ++chat) {
        const auto lineas = hecho(u"WhatsApp/Chats/c%1.txt"_s.arg(chat)).split('\n');
        QCOMPARE(lineas.size(), 10);
        QVERIFY(lineas[7].endsWith("m" + QByteArray::number(chat + 2100)));
    }
}

void PruebaExtractores::nombresDeConversacion_data()
{
    QTest::addColumn<QByteArray>("grupo");
    QTest::addColumn<QByteArray>("fichero");
    QTest::newRow("telephone") << QByteArray("+34600112233") << QByteArray("+34600112233.txt");
    QTest::newRow("slash") << QByteArray("a/b/c") << QByteArray("a-b-c.txt");
    QTest::newRow("up") << QByteArray("..") << QByteArray("...txt");
    QTest::newRow("far up") << QByteArray("../../etc/passwd") << QByteArray("..-..-etc-passwd.txt");
    QTest::newRow("empty") << QByteArray() << QByteArray(".txt");
    QTest::newRow("251 bytes fit") << QByteArray(251, 'a') << QByteArray(251, 'a') + ".txt";
    QTest::newRow("252 bytes do not") << QByteArray(252, 'a') << QByteArray(200, 'a') + "~5bb5b9a6.txt";
    QTest::newRow("not cut inside a letter")
        << QByteArray("ñ").repeated(200) << QByteArray("ñ").repeated(100) + "~d3ad6a1f.txt";
}

void PruebaExtractores::nombresDeConversacion()
{
    QFETCH(QByteArray, grupo);
    QFETCH(QByteArray, fichero);
    NombresDistintos nombres;
    const auto dado = nombres.tomar(grupo, ".txt");
    // The next one of that name is another file that any file system takes.
    const auto otro = nombres.tomar(grupo, ".txt");
    QVERIFY(otro.endsWith(" (2).txt") && otro.size() <= 255 && QUtf8StringView(otro).isValidUtf8());
    if (fichero.contains('~')) { // the digest is not worth writing twice
        QCOMPARE(dado.first(dado.indexOf(char(126))), fichero.first(fichero.indexOf(char(126))));
        QVERIFY(dado.size() < 255 && dado != nombres.tomar(grupo + 'x', ".txt"));
    } else {
        QCOMPARE(dado, fichero);
    }
}

void PruebaExtractores::nadaSaleDeLaCarpeta_data()
{
    QTest::addColumn<QByteArray>("nombre"); // in hexadecimal, as the database stores it
    const QList<QByteArray> nombres{"..",
                                    ".",
                                    "",
                                    "/",
                                    "//",
                                    "../x",
                                    "../../../x",
                                    "/etc/x",
                                    "a/../../x",
                                    "~",
                                    "~/x",
                                    "$HOME",
                                    "`x`",
                                    "x\ny",
                                    "x\ty",
                                    "\x1b[2J",
                                    "CON",
                                    "NUL",
                                    "a:b",
                                    "a\\b",
                                    "*",
                                    "?",
                                    "\"",
                                    "'",
                                    "|",
                                    "<>",
                                    "-rf",
                                    "--",
                                    " ",
                                    "  x  ",
                                    ".vellora-parcial-0",
                                    ".hidden",
                                    "ñ",
                                    "漢字",
                                    "😀",
                                    "a\u0301",
                                    "\u202Egnp",
                                    "\uFEFFx",
                                    QByteArray(255, 'x'),
                                    QByteArray(256, 'x'),
                                    QByteArray(300, 'x'),
                                    QByteArray(5000, 'x'),
                                    QByteArray("ñ").repeated(150),
                                    QByteArray("😀").repeated(80),
                                    QByteArray("x\0y", 3),
                                    QByteArray("\0", 1),
                                    QByteArray("..\0", 3),
                                    "\xFF",
                                    "\xC0\xAE\xC0\xAE",
                                    "\xED\xA0\x80",
                                    "a\xE2\x82",
                                    "x.txt",
                                    ".txt",
                                    "..txt",
                                    "Mensajes",
                                    "../Mensajes",
                                    "Chats",
                                    "a/b",
                                    "a-b",
                                    "%2e%2e%2f",
                                    "file:///etc/x",
                                    "x;y",
                                    "x'; DROP TABLE m;--"};
    QVERIFY(nombres.size() >= 60);
    for (qsizetype i = 0; i < nombres.size(); ++i)
        QTest::newRow(("name " + QByteArray::number(i)).constData()) << nombres[i].toHex();
}

void PruebaExtractores::nadaSaleDeLaCarpeta()
{
    QFETCH(QByteArray, nombre);
    const auto valor = "CAST(x'" + nombre + "' AS TEXT)";
    QVERIFY(escribirBase(desde + u"/sms.db"_s, QByteArray(tablasDeMensajes) + "INSERT INTO handle VALUES (1," + valor +
                                                   "); INSERT INTO message VALUES (1,'hola',1,1,0)"));
    QVERIFY(escribirBase(desde + u"/WhatsApp/ChatStorage.sqlite"_s,
                         QByteArray(tablasDeWhatsApp) + "INSERT INTO ZWACHATSESSION VALUES (1," + valor +
                             ",'x'); INSERT INTO ZWAMESSAGE VALUES (1,1,1,0,'hola')"));
    QCOMPARE(Extraccion::mensajes(desde, a), u"Mensajes: 1 en 1 conversaciones (carpeta Mensajes)"_s);
    QCOMPARE(Extraccion::whatsapp(desde, a), u"WhatsApp: 1 mensajes en 1 chats"_s);
    const auto todo = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    QCOMPARE(QDir(casa->path()).entryList(todo), (QStringList{u"desde"_s, u"Mis datos"_s}));
    QCOMPARE(QDir(a).entryList(todo), (QStringList{u"Mensajes"_s, u"WhatsApp"_s}));
    QCOMPARE(QDir(a + u"/Mensajes"_s).entryList(todo).size(), 1);
    QCOMPARE(QDir(a + u"/WhatsApp"_s).entryList(todo), QStringList{u"Chats"_s});
    QCOMPARE(QDir(a + u"/WhatsApp/Chats"_s).entryList(todo).size(), 1);
}

void PruebaExtractores::whatsapp()
{
    QVERIFY(escribirBase(desde + u"/WhatsApp/ChatStorage.sqlite"_s,
                         QByteArray(tablasDeWhatsApp) +
                             "INSERT INTO ZWACHATSESSION VALUES (1,'Ana','1@s');"
                             "INSERT INTO ZWAMESSAGE VALUES (1,1,700000000.5,0,'Hola'),(2,1,700000060,1,NULL),"
                             "(3,1,700000120,1,''),(4,77,1,0,'de ninguna sesión');"));
    QCOMPARE(Extraccion::whatsapp(desde, a), u"WhatsApp: 3 mensajes en 1 chats"_s);
    QCOMPARE(hecho(u"WhatsApp/Chats/Ana.txt"_s),
             "[08/03/2023 21:26] Ana: Hola\n[08/03/2023 21:27] YO: (foto, audio o adjunto)\n"
             "[08/03/2023 21:28] YO: (foto, audio o adjunto)");
}

void PruebaExtractores::mediosDeWhatsApp()
{
    QVERIFY(escribirFichero(desde + u"/WhatsApp/Media/1@s/a/foto.jpg"_s, "foto"));
    QVERIFY(escribirFichero(desde + u"/WhatsApp/Media/1@s/b/audio.opus"_s, "audio"));
    QVERIFY(QFile::link(u"/etc/hostname"_s, desde + u"/WhatsApp/Media/enlace"_s));
    QVERIFY(escribirFichero(a + u"/WhatsApp/Fotos y audios/vieja.jpg"_s, "vieja"));
    QVERIFY(escribirFichero(a + u"/WhatsApp/.vellora-medios/a medias"_s, "x"));
    // The second half does not need the first.
    QCOMPARE(Extraccion::whatsapp(desde, a), u"WhatsApp: 2 fotos, audios y vídeos"_s);
    QCOMPARE(hecho(u"WhatsApp/Fotos y audios/1@s/a/foto.jpg"_s), "foto");
    const auto todo = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    // What is no longer on the phone, or not in this backup, stays.
    QCOMPARE(QDir(a + u"/WhatsApp/Fotos y audios"_s).entryList(todo), (QStringList{u"1@s"_s, u"vieja.jpg"_s}));
    QCOMPARE(QDir(a + u"/WhatsApp"_s).entryList(todo), QStringList{u"Fotos y audios"_s});

    // A link in its place is replaced, what it points at stays.
    const auto fuera = casa->filePath(u"fuera"_s);
    QVERIFY(escribirFichero(fuera + u"/mía.jpg"_s, "mía"));
    QVERIFY(QDir(a + u"/WhatsApp/Fotos y audios"_s).removeRecursively());
    QVERIFY(QFile::link(fuera, a + u"/WhatsApp/Fotos y audios"_s));
    QVERIFY(Extraccion::whatsapp(desde, a).has_value());
    QCOMPARE(QDir(fuera).entryList(todo), QStringList{u"mía.jpg"_s});
    QVERIFY(!QFileInfo(a + u"/WhatsApp/Fotos y audios"_s).isSymLink());
}

void PruebaExtractores::grabadora()
{
    QVERIFY(escribirFichero(desde + u"/Grabadora/una.m4a"_s, "1"));
    QVERIFY(escribirFichero(desde + u"/Grabadora/sub/dos.M4A"_s, "2"));
    QVERIFY(escribirFichero(desde + u"/Grabadora/igual.m4a"_s, "la misma"));
    QVERIFY(escribirFichero(desde + u"/Grabadora/tres.qta"_s, "3"));
    QVERIFY(escribirFichero(desde + u"/Grabadora/tirada.m4a"_s, "4"));
    QVERIFY(escribirFichero(desde + u"/Grabadora/no.aac"_s, "x"));
    QVERIFY(escribirFichero(desde + u"/MediaDomain/Recordings/una.m4a"_s, "la última"));
    QVERIFY(escribirFichero(desde + u"/MediaDomain/Media/Recordings/UNA.m4a"_s, "la de antes"));
    QVERIFY(escribirFichero(desde + u"/MediaDomain/Media/Recordings/igual.m4a"_s, "la misma"));
    QVERIFY(escribirBase(desde + u"/Grabadora/CloudRecordings.db"_s,
                         "CREATE TABLE ZCLOUDRECORDING (ZPATH, ZEVICTIONDATE);"
                         "INSERT INTO ZCLOUDRECORDING VALUES ('una.m4a',NULL),('tirada.m4a',700000000),('',1)"));
    const auto resumen = u"Grabadora: 6 grabaciones (carpeta Grabadora)\n"
                         "Grabaciones eliminadas hace poco: 1 (carpeta Eliminado hace poco)"_s;
    QCOMPARE(Extraccion::notasDeVoz(desde, a), resumen);
    // A second time nothing is doubled.
    QCOMPARE(Extraccion::notasDeVoz(desde, a), resumen);
    QCOMPARE(hecho(u"Grabadora/UNA.m4a"_s), "la de antes");
    QCOMPARE(hecho(u"Grabadora/una (2).m4a"_s), "la última");
    QCOMPARE(hecho(u"Grabadora/una (3).m4a"_s), "1");
    QCOMPARE(QDir(a + u"/Grabadora"_s).entryList(QDir::Files | QDir::Hidden, QDir::Name).size(), 6);
    QCOMPARE(hecho(u"Grabadora/tres.qta"_s), "3");
    QCOMPARE(hecho(u"Eliminado hace poco/Grabadora/tirada.m4a"_s), "4");
    // The unpacked file is not changed by what happens to the result.
    QCOMPARE(leerFichero(desde + u"/Grabadora/una.m4a"_s), "1");
}

void PruebaExtractores::llamadasYSalud()
{
    QVERIFY(escribirBase(
        desde + u"/CallHistory.storedata"_s,
        "CREATE TABLE ZCALLRECORD (ZADDRESS, ZDATE, ZORIGINATED, ZDURATION);"
        "INSERT INTO ZCALLRECORD VALUES ('+34600;1',700000000,1,65.9),(NULL,700000060,0,'nada'),('5',NULL,0,NULL)"));
    QCOMPARE(Extraccion::llamadas(desde, a), u"Llamadas: 3 registradas (Llamadas.csv)"_s);
    QCOMPARE(hecho(u"Llamadas.csv"_s), "Número;Fecha;Sentido;Duración (segundos)\n;08/03/2023 21:27;Entrante;0\n"
                                       "+34600;1;08/03/2023 21:26;Saliente;65\n5;;Entrante;0\n");
    QVERIFY(escribirBase(desde + u"/healthdb_secure.sqlite"_s,
                         "CREATE TABLE samples (data_id INTEGER PRIMARY KEY, data_type INTEGER, start_date REAL);"
                         "CREATE TABLE objects (data_id INTEGER PRIMARY KEY, type INTEGER);"
                         "INSERT INTO samples VALUES "
                         "(1,7,700000000),(2,7,710000000.5),(3,7,700000001),(4,99,700000000),(5,99,700000000),"
                         "(6,63,0),(7,7,600000000),(8,12,700000000),(9,9,700000000);"
                         "INSERT INTO objects VALUES (1,1),(2,1),(3,NULL),(7,2)"));
    QCOMPARE(Extraccion::salud(desde, a), u"Salud: 5 tipos de medición (Salud.csv)"_s);
    auto lineas = hecho(u"Salud.csv"_s).split('\n');
    std::sort(lineas.begin() + 3, lineas.end() - 1);
    QCOMPARE(lineas.join('\n'), "Qué;Cuántas mediciones;Desde;Hasta\nPasos;3;08/03/2023 21:26;02/07/2023 16:13\n"
                                "Tipo 99;2;08/03/2023 21:26;08/03/2023 21:26\n"
                                "Energía en reposo;1;08/03/2023 21:26;08/03/2023 21:26\n"
                                "Pisos subidos;1;08/03/2023 21:26;08/03/2023 21:26\nSueño;1;;\n");
}

void PruebaExtractores::calendarioYNotas()
{
    QVERIFY(escribirBase(desde + u"/Calendar.sqlitedb"_s,
                         "CREATE TABLE CalendarItem (summary, start_date, end_date, due_date, completed);"
                         "INSERT INTO CalendarItem VALUES ('Dentista; a\nlas 9',700000000,700003600,NULL,0),"
                         "('Comprar; pan',NULL,NULL,700000000,1),(NULL,1,1,600000000,0)"));
    QCOMPARE(Extraccion::calendario(desde, a), u"Calendario: 2 citas (Calendario.csv)"_s);
    QCOMPARE(hecho(u"Calendario.csv"_s),
             "Título;Empieza;Termina;Dónde\nDentista, a las 9;08/03/2023 21:26;08/03/2023 22:26;\n"
             "Comprar, pan;;;\n");
    QCOMPARE(Extraccion::recordatorios(desde, a), u"Recordatorios: 2 (Recordatorios.txt)"_s);
    QCOMPARE(hecho(u"Recordatorios.txt"_s),
             "TUS RECORDATORIOS\n\n[hecho] Comprar; pan   08/03/2023 21:26\n[    ]    06/01/2020 11:40\n");
    QVERIFY(escribirBase(desde + u"/NoteStore.sqlite"_s,
                         "CREATE TABLE ZICCLOUDSYNCINGOBJECT (ZTITLE1, ZMODIFICATIONDATE1, ZSNIPPET);"
                         "INSERT INTO ZICCLOUDSYNCINGOBJECT VALUES ('Lista; "
                         "compra',700000000,'leche'),(NULL,1,'x'),('Vacía',NULL,NULL)"));
    QCOMPARE(Extraccion::notas(desde, a), u"Notas: 2 (Notas.txt)"_s);
    QCOMPARE(hecho(u"Notas.txt"_s), "TUS NOTAS\n\n── Lista; compra  (08/03/2023 21:26)\nleche\n\n── Vacía  ()\n\n\n");
}

void PruebaExtractores::diasEnteros()
{
    // Whole days and hours without a zone stand at the phone's own clock, which is written as if it were UTC; a
    // birthday is the day of the birth, and 1604 a year that nobody knows.
    QVERIFY(escribirBase(
        desde + u"/Calendar.sqlitedb"_s,
        "CREATE TABLE CalendarItem (summary, start_date, start_tz, end_date, end_tz, all_day, due_date, due_tz, "
        "due_all_day, completion_date, entity_type);"
        "INSERT INTO CalendarItem VALUES ('Puente',699926400,'_float',700012799,'_float',1,NULL,NULL,0,NULL,2),"
        "('Dentista',699900000,'America/New_York',699903600,NULL,0,NULL,NULL,0,NULL,2),"
        "('Desayuno',699800000,NULL,699803600,'_float',0,NULL,NULL,0,NULL,2),"
        "('Cumple de la yaya',-1738800000,'_float',-1738713601,'_float',1,NULL,NULL,0,NULL,2),"
        "('Cumple de Bego',-12517113600,'_float',-12517027201,'_float',1,NULL,NULL,0,NULL,2),"
        "('Hecha',NULL,NULL,NULL,NULL,0,699926400,'Europe/Madrid',1,699900000,3),"
        "('Por hacer',NULL,NULL,NULL,NULL,0,699900000,'Europe/Madrid',0,NULL,3),"
        "('Sin día',NULL,NULL,NULL,NULL,0,NULL,NULL,0,0,3)"));
    for (const auto *zona : {"Europe/Madrid", "America/Los_Angeles", "Pacific/Kiritimati"}) {
        qputenv("TZ", zona);
        tzset();
        QVERIFY(Extraccion::calendario(desde, a).has_value());
        QVERIFY(Extraccion::recordatorios(desde, a).has_value());
        qputenv("TZ", "Europe/Madrid");
        tzset();
        const auto citas = hecho(u"Calendario.csv"_s);
        QVERIFY2(citas.contains("Puente;08/03/2023 00:00;08/03/2023 23:59;\n"), zona);
        QVERIFY2(citas.contains("Desayuno;06/03/2023 12:53;06/03/2023 13:53;\n"), zona);
        QVERIFY2(citas.contains("Cumple de la yaya;26/11/1945 00:00;26/11/1945 23:59;\n"), zona);
        QVERIFY2(citas.contains("Cumple de Bego;08/05;08/05;\n"), zona);
        QVERIFY2(hecho(u"Recordatorios.txt"_s).contains("[hecho] Hecha   08/03/2023 00:00\n"), zona);
    }
    QVERIFY(Extraccion::calendario(desde, a).has_value());
    QVERIFY(hecho(u"Calendario.csv"_s).contains("Dentista;07/03/2023 17:40;07/03/2023 18:40;\n"));
    QCOMPARE(Extraccion::recordatorios(desde, a), u"Recordatorios: 3 (Recordatorios.txt)"_s);
    QCOMPARE(hecho(u"Recordatorios.txt"_s),
             "TUS RECORDATORIOS\n\n[hecho] Hecha   08/03/2023 00:00\n[    ] Por hacer   07/03/2023 17:40\n"
             "[    ] Sin día   \n");
}

void PruebaExtractores::recordatoriosDeSusBases()
{
    const auto sitio = [this](const QString &dominio, const QString &nombre) {
        return desde + u'/' + dominio + u"/Container_v1/Stores/Data-"_s + nombre + u".sqlite"_s;
    };
    const auto nueva = u"AppDomainGroup-group.com.apple.reminders"_s;
    QVERIFY(escribirBase(
        sitio(nueva, u"A"_s),
        "CREATE TABLE ZREMCDREMINDER (Z_PK INTEGER PRIMARY KEY, ZTITLE, ZCOMPLETED, ZCOMPLETIONDATE, ZDUEDATE, "
        "ZALLDAY, "
        "ZTIMEZONE, ZLIST, ZMARKEDFORDELETION);"
        "CREATE TABLE ZREMCDBASELIST (Z_PK INTEGER PRIMARY KEY, ZMARKEDFORDELETION);"
        "CREATE TABLE ZREMCDOBJECT (Z_PK INTEGER PRIMARY KEY, ZTITLE);"
        "INSERT INTO ZREMCDBASELIST VALUES (1,0),(2,1);"
        "INSERT INTO ZREMCDREMINDER VALUES (1,'Comprar\n[hecho] pan',1,700000000,700000000,0,'Europe/Madrid',1,0),"
        "(2,'Regar',0,NULL,699926400,1,NULL,1,0),(3,'Tirado',0,NULL,NULL,0,NULL,1,1),"
        "(4,'De una lista tirada',0,NULL,NULL,0,NULL,2,0),(5,'Algún día',0,NULL,NULL,0,NULL,NULL,NULL)"));
    QVERIFY(escribirBase(sitio(nueva, u"vacia"_s), "CREATE TABLE ZREMCDREMINDER (Z_PK INTEGER PRIMARY KEY, ZTITLE, "
                                                   "ZCOMPLETED, ZDUEDATE)"));
    // Older systems: everything in one table, told apart by a number that is no constant.
    QVERIFY(escribirBase(
        sitio(u"HomeDomain/Library/Reminders"_s, u"local"_s),
        "CREATE TABLE Z_PRIMARYKEY (Z_ENT, Z_NAME); INSERT INTO Z_PRIMARYKEY VALUES "
        "(14,'REMCDList'),(23,'REMCDReminder');"
        "CREATE TABLE ZREMCDOBJECT (Z_PK INTEGER PRIMARY KEY, Z_ENT, ZTITLE, ZTITLE1, ZCOMPLETED, ZDUEDATE);"
        "INSERT INTO ZREMCDOBJECT VALUES (1,23,NULL,'De antes',0,700000060),(2,14,'una lista',NULL,NULL,NULL)"));
    QVERIFY(escribirBase(desde + u"/AppDomain-otra/Documents/Data-x.sqlite"_s,
                         "CREATE TABLE ZREMCDREMINDER (Z_PK INTEGER PRIMARY KEY, ZTITLE, ZCOMPLETED, ZDUEDATE);"
                         "INSERT INTO ZREMCDREMINDER VALUES (1,'de otra app',0,1)"));
    QCOMPARE(Extraccion::recordatorios(desde, a),
             u"Recordatorios: 4 (Recordatorios.txt)\n"
             "Recordatorios eliminados hace poco: 2 (carpeta Eliminado hace poco)"_s);
    QCOMPARE(hecho(u"Recordatorios.txt"_s),
             "TUS RECORDATORIOS\n\n[hecho] Comprar [hecho] pan   08/03/2023 21:26\n[    ] Regar   08/03/2023 00:00\n"
             "[    ] Algún día   \n[    ] De antes   08/03/2023 21:27\n");
    const auto tirados = hecho(u"Eliminado hace poco/Recordatorios.txt"_s);
    QVERIFY(tirados.contains("[    ] Tirado") && tirados.contains("De una lista tirada"));
}

void PruebaExtractores::notasDeLaPapelera()
{
    QVERIFY(escribirBase(
        desde + u"/NoteStore.sqlite"_s,
        "CREATE TABLE ZICCLOUDSYNCINGOBJECT (Z_PK INTEGER PRIMARY KEY, ZTITLE1, ZMODIFICATIONDATE1, ZSNIPPET, ZFOLDER, "
        "ZFOLDERTYPE, ZPARENT, ZMARKEDFORDELETION);"
        "INSERT INTO ZICCLOUDSYNCINGOBJECT VALUES (1,NULL,NULL,NULL,NULL,0,NULL,0),(2,NULL,NULL,NULL,NULL,1,NULL,0),"
        "(3,NULL,NULL,NULL,NULL,0,2,0),(4,NULL,NULL,NULL,NULL,0,4,0),"
        "(10,'Viva\n── Falsa  ()',2,'── Otra  ()\n── Y otra',1,NULL,NULL,0),(11,'Tirada',1,'x',2,NULL,NULL,0),"
        "(12,'En carpeta tirada',1,'x',3,NULL,NULL,0),(13,'A punto de irse',1,'x',1,NULL,NULL,1),"
        "(14,'Suelta',1,'x',NULL,NULL,NULL,NULL),(15,'En círculo',3,'x',4,NULL,NULL,0)"));
    QCOMPARE(Extraccion::notas(desde, a), u"Notas: 3 (Notas.txt)\n"
                                          "Notas eliminadas hace poco: 3 (carpeta Eliminado hace poco)"_s);
    // What a note says never looks like another note.
    const auto vivas = hecho(u"Notas.txt"_s);
    QCOMPARE(('\n' + vivas).count("\n── "), 3);
    QVERIFY(vivas.contains("── Viva ── Falsa  ()  (") && vivas.contains("\n    ── Otra  ()\n    ── Y otra\n"));
    QCOMPARE(('\n' + hecho(u"Eliminado hace poco/Notas.txt"_s)).count("\n── "), 3);
}

void PruebaExtractores::safari()
{
    QVERIFY(escribirBase(desde + u"/Bookmarks.db"_s,
                         "CREATE TABLE bookmarks (title, url, deleted);"
                         "INSERT INTO bookmarks VALUES ('B; b','https://b',0),('A','https://a',NULL),('carpeta','',0),"
                         "('borrado','https://c',1)"));
    QCOMPARE(Extraccion::safari(desde, a), u"Safari: marcadores (2)"_s);
    QCOMPARE(hecho(u"Safari - marcadores.txt"_s),
             "TUS MARCADORES DE SAFARI\n\nA\n    https://a\n\nB; b\n    https://b\n\n");
    QVERIFY(escribirBase(
        desde + u"/History.db"_s,
        "CREATE TABLE history_items (id INTEGER PRIMARY KEY, url); CREATE TABLE history_visits (history_item, title, "
        "visit_time); INSERT INTO history_items VALUES (1,'https://x/;a');"
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i < 5003) "
        "INSERT INTO history_visits SELECT 1, 'v' || i || ';', 700000000 + i FROM n"));
    QCOMPARE(Extraccion::safari(desde, a), u"Safari: historial (5000 visitas), marcadores (2)"_s);
    const auto lineas = hecho(u"Safari - historial.csv"_s).split('\n');
    QCOMPARE(lineas.size(), 5002);
    QCOMPARE(lineas[1], "08/03/2023 22:50;v5003,;https://x/,a");
    QVERIFY(lineas[5000].contains(";v4,;"));
}

void PruebaExtractores::buzon()
{
    QVERIFY(escribirBase(desde + u"/HomeDomain/voicemail.db"_s,
                         "CREATE TABLE voicemail (ROWID INTEGER PRIMARY KEY, sender, date, duration, trashed_date);"
                         "INSERT INTO voicemail VALUES (3,'+34600',1678307200,12,0),(8,NULL,0,NULL,NULL),"
                         "(9,'+34700',1678307200,5,700000900)"));
    QVERIFY(escribirFichero(desde + u"/HomeDomain/3.amr"_s, "sonido"));
    QVERIFY(escribirFichero(desde + u"/HomeDomain/4.amr"_s, "de nadie"));
    QVERIFY(escribirFichero(desde + u"/HomeDomain/9.amr"_s, "tirado"));
    QCOMPARE(Extraccion::buzonDeVoz(desde, a),
             u"Buzón de voz: 2 mensajes, 1 audios guardados\n"
             "Buzón de voz, eliminados hace poco: 1 mensajes, 1 audios (carpeta Eliminado hace poco)"_s);
    QCOMPARE(hecho(u"Buzón de voz/Quién llamó.txt"_s),
             "BUZÓN DE VOZ\n\n+34600  —  08/03/2023 21:26  (12 segundos)  →  3.amr\n"
             "  —    ( segundos)  →  8.amr\n");
    QCOMPARE(hecho(u"Buzón de voz/3.amr"_s), "sonido");
    QVERIFY(!QFile::exists(a + u"/Buzón de voz/4.amr"_s) && !QFile::exists(a + u"/Buzón de voz/9.amr"_s));
    QCOMPARE(hecho(u"Eliminado hace poco/Buzón de voz/9.amr"_s), "tirado");
}

void PruebaExtractores::loQueSoloEstaEnElWal()
{
    const auto viva = casa->filePath(u"viva.db"_s);
    sqlite3 *base = nullptr;
    QCOMPARE(sqlite3_open(viva.toUtf8().constData(), &base), SQLITE_OK);
    QCOMPARE(sqlite3_exec(base,
                          (QByteArray("PRAGMA journal_mode=WAL;") + tablasDeMensajes +
                           "PRAGMA wal_checkpoint(TRUNCATE); INSERT INTO message VALUES (1,'en el diario',NULL,1,0)")
                              .constData(),
                          nullptr, nullptr, nullptr),
             SQLITE_OK);
    QVERIFY(QDir().mkpath(desde));
    for (const auto &cola : {QString(), u"-wal"_s, u"-shm"_s})
        QVERIFY(QFile::copy(viva + cola, desde + u"/sms.db"_s + cola));
    sqlite3_close(base);
    QCOMPARE(Extraccion::mensajes(desde, a), u"Mensajes: 1 en 1 conversaciones (carpeta Mensajes)"_s);
    QVERIFY(hecho(u"Mensajes/Desconocido.txt"_s).endsWith("en el diario"));
}

void PruebaExtractores::unWalRoto()
{
    loQueSoloEstaEnElWal();
    // Torn in its last frame: what was folded before stays.
    QFile diario(desde + u"/sms.db-wal"_s);
    QVERIFY(diario.resize(diario.size() - 100));
    QVERIFY(!Extraccion::mensajes(desde, casa->filePath(u"otra"_s)));
    QVERIFY(escribirFichero(desde + u"/sms.db-wal"_s, QByteArray(5000, 'x')));
    QVERIFY(!Extraccion::mensajes(desde, casa->filePath(u"otra"_s)));
}

void PruebaExtractores::nadaQueSacar()
{
    QVERIFY(QDir().mkpath(desde));
    QVERIFY(Extraccion::todo(desde, a).isEmpty());
    QVERIFY(escribirBase(desde + u"/sms.db"_s, tablasDeMensajes));
    QVERIFY(escribirBase(desde + u"/NoteStore.sqlite"_s, "CREATE TABLE otra (x)"));
    QVERIFY(escribirFichero(desde + u"/CallHistory.storedata"_s, "esto no es una base"));
    QVERIFY(Extraccion::todo(desde, a).isEmpty());
    QVERIFY(QDir(a).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).isEmpty());
}

void PruebaExtractores::discoLlenoDejaLoDeAntes()
{
    QVERIFY(escribirBase(desde + u"/sms.db"_s,
                         QByteArray(tablasDeMensajes) +
                             "INSERT INTO handle VALUES (1,'corta'),(2,'larga');"
                             "INSERT INTO message VALUES (1,'x',1,1,0),(2,printf('%.100000c','y'),2,1,0)"));
    QVERIFY(escribirFichero(a + u"/Mensajes/larga.txt"_s, "lo de antes"));
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit antes{};
    getrlimit(RLIMIT_FSIZE, &antes);
    // Room for the private copy, not for the long conversation.
    const auto tamano = static_cast<rlim_t>(QFileInfo(desde + u"/sms.db"_s).size());
    const rlimit corto{std::min<rlim_t>(tamano, 100'000), antes.rlim_max};
    setrlimit(RLIMIT_FSIZE, &corto);
    const auto resumen = Extraccion::mensajes(desde, a);
    setrlimit(RLIMIT_FSIZE, &antes);
    QCOMPARE(resumen, u"Mensajes: 1 en 1 conversaciones (carpeta Mensajes)"_s);
    QCOMPARE(hecho(u"Mensajes/larga.txt"_s), "lo de antes");
    QCOMPARE(QDir(a).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{u"Mensajes"_s});
}

/// Somebody puts links where private copies used to be made, and at the name of the unpacked backup.
void PruebaExtractores::noQuedanCopiasPrivadas()
{
    const auto documentos = casa->filePath(u"Documentos"_s);
    QVERIFY(escribirFichero(documentos + u"/tesis.odt"_s, "importante"));
    for (const auto &nombre : {u"/vellora-bd"_s, u"/vellora-extraccion"_s}) {
        QFile::remove(QDir::tempPath() + nombre);
        QVERIFY(QFile::link(documentos, QDir::tempPath() + nombre));
    }
    QFile viejo(documentos + u"/tesis.odt"_s);
    QVERIFY(viejo.open(QIODevice::ReadWrite) &&
            viejo.setFileTime(QDateTime::currentDateTime().addDays(-1), QFile::FileModificationTime));
    loQueSoloEstaEnElWal();
    Extraccion::todo(desde, a);
    CarpetaDeTrabajo::quitarMuertas();
    QCOMPARE(QDir(documentos).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{u"tesis.odt"_s});
    const QDir deTrabajo(CarpetaPrivada::enLaCache(u"trabajo"_s));
    QVERIFY(deTrabajo.exists());
    QVERIFY(deTrabajo.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).isEmpty());
}

QTEST_GUILESS_MAIN(PruebaExtractores)
#include "PruebaExtractores.moc"
