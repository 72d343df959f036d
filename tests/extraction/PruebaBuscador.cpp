#include "extraction/Aguja.h"
#include "extraction/BuscadorGlobal.h"
#include "support/BaseDePrueba.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

class PruebaBuscador : public QObject
{
    Q_OBJECT

private slots:
    void init() { casa = std::make_unique<QTemporaryDir>(); }
    void aguja_data();
    void aguja();
    void agujaComoLaLenta();
    void bytesRotos();
    void ordenYTopes();
    void unaPorChat();
    void lineasLargas();
    void indiceDanado_data();
    void indiceDanado();
    void loQueNoSePuedeLeer();

private:
    QString datos() const { return casa->filePath(u"datos"_s); }
    QString indice() const { return casa->filePath(u"indice.json"_s); }
    void pon(const QString &nombre, const QByteArray &texto) const
    {
        QVERIFY(escribirFichero(datos() + u'/' + nombre, texto));
    }
    QList<ResultadoGlobal> busca(const QString &texto) const
    {
        return BuscadorGlobal::buscarEn(texto, datos(), indice());
    }

    std::unique_ptr<QTemporaryDir> casa;
};

void PruebaBuscador::aguja_data()
{
    QTest::addColumn<QString>("busco");
    QTest::addColumn<QString>("texto");
    QTest::addColumn<int>("sitio"); // in bytes
    QTest::newRow("as it is") << u"casa"_s << u"la casa"_s << 3;
    QTest::newRow("capitals of the text") << u"casa"_s << u"LA CASA"_s << 3;
    QTest::newRow("capitals of the needle") << u"CASA"_s << u"la casa"_s << 3;
    QTest::newRow("accents count") << u"jose"_s << u"José"_s << -1;
    QTest::newRow("capital with accent") << u"émulo"_s << u"el ÉMULO"_s << 3;
    QTest::newRow("ñ") << u"ñandú"_s << u"un ÑANDÚ"_s << 3;
    QTest::newRow("ü") << u"pingüino"_s << u"PINGÜINO"_s << 0;
    QTest::newRow("only accents") << u"áé"_s << u"ÁÉ"_s << 0;
    QTest::newRow("ñ written apart") << u"niño"_s << u"NIN\u0303O"_s << 0;
    QTest::newRow("n is no ñ of one letter") << u"nino"_s << u"niño"_s << -1;
    QTest::newRow("the sign of kelvin is a k") << u"kelvin"_s << u"\u212Aelvin"_s << 0;
    QTest::newRow("only k") << u"kk"_s << u"x\u212Ak"_s << 1;
    QTest::newRow("the dotted capital i is no i") << u"is"_s << u"İstanbul"_s << -1;
    QTest::newRow("emoji") << u"🥘 a"_s << u"hago arroz 🥘 A la una"_s << 11;
    QTest::newRow("at the end") << u"fin"_s << QString(200, u'x') + u"FIN"_s << 200;
    QTest::newRow("cut at the end") << u"fin"_s << QString(200, u'x') + u"fi"_s << -1;
    QTest::newRow("longer than the text") << u"abcdefgh"_s << u"abc"_s << -1;
    QTest::newRow("nothing in nothing") << u"a"_s << QString() << -1;
    QTest::newRow("after a false start") << u"aab"_s << u"aaab"_s << 1;
    QTest::newRow("far, over many blocks") << u"zanahoria"_s << u"zana hor "_s.repeated(500) + u"Zanahoria"_s << 4500;
}

void PruebaBuscador::aguja()
{
    QFETCH(const QString, busco);
    QFETCH(const QString, texto);
    QTEST(static_cast<int>(Aguja(busco).en(texto.toUtf8())), "sitio");
}

/// A slow search that is plainly right, over texts made of few letters so that near misses abound.
void PruebaBuscador::agujaComoLaLenta()
{
    const auto letras = u"aAáÁeEkK\u212AñÑnzZßẞ 1😀iİ"_s.toUcs4();
    QRandomGenerator azar(20260521);
    const auto alAzar = [&](int cuantas) {
        QList<uint> uno;
        for (int i = 0; i < cuantas; ++i)
            uno << letras[azar.bounded(letras.size())];
        return uno;
    };
    const auto enMinusculas = [](const QList<uint> &uno) {
        std::u32string bajas;
        for (const auto letra : uno)
            bajas += Aguja::minuscula(letra);
        return bajas;
    };
    for (int vuelta = 0; vuelta < 20000; ++vuelta) {
        const auto busco = alAzar(1 + azar.bounded(4));
        const auto texto = alAzar(azar.bounded(300));
        const auto sitio = enMinusculas(texto).find(enMinusculas(busco));
        const auto antes = QString::fromUcs4(reinterpret_cast<const char32_t *>(texto.constData()),
                                             sitio == std::u32string::npos ? 0 : static_cast<qsizetype>(sitio));
        const auto esperado = sitio == std::u32string::npos ? -1 : antes.toUtf8().size();
        const auto enTexto = QString::fromUcs4(reinterpret_cast<const char32_t *>(texto.constData()), texto.size());
        const auto enBusca = QString::fromUcs4(reinterpret_cast<const char32_t *>(busco.constData()), busco.size());
        if (enBusca != enBusca.normalized(QString::NormalizationForm_D))
            continue; // two ways of writing it; the table has those
        QVERIFY2(Aguja(enBusca).en(enTexto.toUtf8()) == esperado,
                 qPrintable(enBusca + u" en "_s + enTexto + u": "_s + QString::number(esperado)));
    }
}

void PruebaBuscador::bytesRotos()
{
    QRandomGenerator azar(7);
    const Aguja corta(u"año"_s);
    const Aguja rara(u"kk"_s);
    for (int vuelta = 0; vuelta < 3000; ++vuelta) {
        QByteArray bytes(azar.bounded(200), Qt::Uninitialized);
        for (auto &byte : bytes)
            byte = static_cast<char>(azar.bounded(256));
        corta.en(bytes);
        rara.en(bytes);
        const auto sitio = bytes.size();
        QCOMPARE(corta.en(bytes + "aAÑo"), sitio + 1);
    }
    QCOMPARE(corta.en(QByteArray("a\xc3")), -1);
    QCOMPARE(corta.en(QByteArray("a\xf4\xbf\xbf\xbfo año")), 7);
}

void PruebaBuscador::ordenYTopes()
{
    pon(u"WhatsApp/Chats/Ana.txt"_s, "[01/02/2026 10:00] Ana: Hola, GATO\n");
    pon(u"Mensajes/+34600.txt"_s, "[01/02/2026 10:00] +34600: el gato\n");
    pon(u"Mensajes/Álvaro.txt"_s, "[01/02/2026 10:00] Álvaro: gatos\n");
    pon(u"Mensajes/Zoe.TXT"_s, "gato\n");
    pon(u"Notas.txt"_s, "TUS NOTAS\n\n" + QByteArray("── Gato  (01/02/2026 10:00)\nmi gato\n\n").repeated(4));
    pon(u"Contactos.csv"_s, "Nombre;Gato;Empresa;Teléfono o correo\n" + QByteArray("Gato;Pérez;;600\n").repeated(20));
    pon(u"Calendario.csv"_s, "Título;Empieza;Termina;Dónde\n" + QByteArray(60, 'x') + " gato;01/02/2026 10:00;;\n");
    QByteArray fichas("[");
    for (int i = 0; i < 30; ++i)
        fichas += R"({"ruta":"/fotos/G)" + QByteArray::number(i) +
                  R"(.jpg","etiquetas":["Gato","b","c","d","e"],"texto":"","caras":0,"esDocumento":false},)";
    fichas += R"({"ruta":"/x.jpg","etiquetas":[],"texto":"un GATO","caras":0,"esDocumento":false}])";
    QVERIFY(escribirFichero(indice(), fichas));
    QStringList tipos;
    const auto hallados = busca(u"gato"_s);
    for (const auto &uno : hallados) {
        tipos << uno.tipo;
        QVERIFY(!uno.id.isNull());
        QCOMPARE(uno.esCarpetaFotos, uno.tipo == u"Foto");
    }
    QCOMPARE(tipos.mid(0, 8), (QStringList{u"Mensaje"_s, u"Mensaje"_s, u"WhatsApp"_s, u"Nota"_s, u"Nota"_s, u"Nota"_s,
                                           u"Nota"_s, u"Nota"_s}));
    QCOMPARE(tipos.count(u"Contacto"_s), 15);
    QCOMPARE(tipos.count(u"Cita"_s), 1);
    QCOMPARE(tipos.count(u"Foto"_s), 20);
    QCOMPARE(tipos.last(), u"Foto"_s);
    QCOMPARE(hallados[0].titulo, u"+34600"_s);
    QCOMPARE(hallados[1].titulo, u"Álvaro"_s);
    QCOMPARE(hallados[1].extracto, u"[01/02/2026 10:00] Álvaro: gatos"_s);
    QCOMPARE(hallados[3].titulo, u"En tus notas"_s);
    QCOMPARE(hallados[8].titulo, u"Gato"_s);
    QCOMPARE(hallados[8].extracto, u"Gato · Pérez ·  · 600"_s);
    QCOMPARE(hallados[8 + 15].titulo, QString(40, u'x'));
    QCOMPARE(hallados.last().titulo, u"G19.jpg"_s);
    QCOMPARE(hallados.last().extracto, u"Gato, b, c, d"_s);
}

void PruebaBuscador::unaPorChat()
{
    QByteArray chat;
    for (int i = 0; i < 10; ++i)
        chat += "[01/02/2026 10:0" + QByteArray::number(i) + "] Ana: otra cosa\n[01/02/2026 10:0" +
                QByteArray::number(i) + "] YO: la Cena\n";
    pon(u"Mensajes/a.txt"_s, chat);
    pon(u"Mensajes/b.txt"_s, "[01/02/2026 10:00] b: " + QByteArray("é").repeated(300) + " cena");
    pon(u"Mensajes/c.txt"_s, "una\nsegunda línea con CENA\ntercera");
    const auto hallados = busca(u"cena"_s);
    QCOMPARE(hallados.size(), 3);
    QCOMPARE(hallados[0].extracto, u"[01/02/2026 10:00] YO: la Cena"_s);
    QCOMPARE(hallados[1].extracto.size(), 120);
    QCOMPARE(hallados[2].extracto, u"segunda línea con CENA"_s);
    QVERIFY(busca(u"cenar"_s).isEmpty());
}

/// Lines and matches that lie across the pieces in which a file is read.
void PruebaBuscador::lineasLargas()
{
    const QByteArray principio("[01/02/2026 10:00] Ana: principio ");
    for (const qsizetype relleno : {1000, 262'100, 262'130, 262'140, 262'144, 270'300, 270'336, 600'000}) {
        pon(u"Mensajes/larga.txt"_s, "corta\n" + principio + QByteArray(relleno, 'x') + " aguja fin\nuna aguja más\n");
        const auto hallados = busca(u"AGUJA"_s);
        QCOMPARE(hallados.size(), 1);
        QCOMPARE(hallados[0].extracto, QString::fromUtf8(principio + QByteArray(120 - principio.size(), 'x')));
        QByteArray muchas;
        while (muchas.size() < relleno)
            muchas += "[01/02/2026 10:00] Ana: nada\n";
        pon(u"Mensajes/larga.txt"_s, muchas + "[02/02/2026 10:00] Ana: la aguja que termina la línea\notra\n");
        QCOMPARE(busca(u"la aguja"_s).value(0).extracto, u"[02/02/2026 10:00] Ana: la aguja que termina la línea"_s);
        pon(u"Mensajes/larga.txt"_s, "ag" + QByteArray(relleno, 'x') + "uja\n");
        QVERIFY(busca(u"aguja"_s).isEmpty());
    }
    // What is kept of a long line for its excerpt does not make a word with what is kept of its end.
    for (qsizetype fin = 270'300; fin < 270'400; ++fin) {
        auto linea = QByteArray(8190, 'x') + "ag" + QByteArray(fin - 8192, 'x');
        linea.replace(fin - 20, 3, "uja");
        pon(u"Mensajes/larga.txt"_s, linea + QByteArray(300'000, 'x'));
        QVERIFY(busca(u"aguja"_s).isEmpty());
    }
}

void PruebaBuscador::indiceDanado_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("cut") << QByteArray(R"([{"ruta":"/a.jpg","etiquetas":["sol"])");
    QTest::newRow("a record without a key") << QByteArray(
        R"([{"ruta":"/a.jpg","etiquetas":["sol"],"texto":"","caras":0,"esDocumento":false},{"ruta":"/b"}])");
    QTest::newRow("labels that are no text")
        << QByteArray(R"([{"ruta":"/a.jpg","etiquetas":["sol",1],"texto":"","caras":0,"esDocumento":false}])");
    QTest::newRow("an object") << QByteArray(R"({"ruta":"/a.jpg"})");
    QTest::newRow("noise") << QByteArray("\0\xff\xfe", 3);
}

void PruebaBuscador::indiceDanado()
{
    QFETCH(const QByteArray, bytes);
    QVERIFY(escribirFichero(indice(), bytes));
    pon(u"Notas.txt"_s, "un día de sol");
    const auto hallados = busca(u"sol"_s);
    QCOMPARE(hallados.size(), 1);
    QCOMPARE(hallados[0].tipo, u"Nota"_s);
}

void PruebaBuscador::loQueNoSePuedeLeer()
{
    pon(u"Mensajes/a.txt"_s, "sol");
    QVERIFY(QFile::link(casa->filePath(u"no está"_s), datos() + u"/Mensajes/b.txt"_s));
    QVERIFY(QDir().mkpath(datos() + u"/Mensajes/c.txt"_s));
    QVERIFY(QDir().mkpath(datos() + u"/Notas.txt"_s));
    QCOMPARE(QProcess::execute(u"mkfifo"_s, {datos() + u"/Contactos.csv"_s}), 0);
    QCOMPARE(busca(u"sol"_s).size(), 1);
    QVERIFY(BuscadorGlobal::buscarEn(u"sol"_s, casa->filePath(u"nada"_s), {}).isEmpty());
}

QTEST_GUILESS_MAIN(PruebaBuscador)
#include "PruebaBuscador.moc"
