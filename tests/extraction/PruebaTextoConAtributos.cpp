#include "extraction/TextoConAtributos.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

const auto uno = QByteArray::fromHex("040b73747265616d747970656481e803840140");
const auto mutableConTexto =
    uno +
    QByteArray::fromHex(
        "848484194e534d757461626c6541747472696275746564537472696e67008484124e5341747472696275746564537472696e6700848408"
        "4e534f626a6563740085928484840f4e534d757461626c65537472696e67018484084e53537472696e67019584012b");

/// A mutable text with a mention in its midst: three runs, the third with the attributes of the first.
const auto mencion =
    mutableConTexto +
    QByteArray::fromHex(
        "09486f6c6120416e612186840269490105928484840c4e5344696374696f6e617279009584016901928498981d5f5f6b494d4d657373"
        "616765506172744174747269627574654e616d658692848484084e534e756d626572008484074e5356616c7565009584012a849b9b00"
        "868699020392849a9b02928498981c5f5f6b494d4d656e74696f6e436f6e6669726d65644d656e74696f6e86928498980c2b33343630"
        "3030303030303186929b929c8699010186");
/// A picture and a word: two bubbles, the first of which names a file.
const auto adjunto =
    mutableConTexto +
    QByteArray::fromHex(
        "07efbfbc4d69726186840269490101928484840c4e5344696374696f6e61727900958401690292849898225f5f6b494d46696c655472"
        "616e73666572475549444174747269627574654e616d6586928498982961745f305f35453243304231412d303030302d343030302d38"
        "3030302d30303030303030303030303186928498981d5f5f6b494d4d657373616765506172744174747269627574654e616d65869284"
        "8484084e534e756d626572008484074e5356616c7565009584012a849b9b00868699020492849a9b01929d92849f9ea19b01868686");

QByteArray tamano(qsizetype n)
{
    QByteArray bytes;
    if (n < 0x80)
        return bytes.append(static_cast<char>(n));
    bytes.append(n < 0x10000 ? '\x81' : '\x82');
    for (int i = 0; i < (n < 0x10000 ? 2 : 4); ++i)
        bytes.append(static_cast<char>(n >> (8 * i) & 0xFF));
    return bytes;
}

/// A text and one run without attributes.
QByteArray sencillo(const QString &texto)
{
    const auto utf8 = texto.toUtf8();
    return mutableConTexto + tamano(utf8.size()) + utf8 + QByteArray::fromHex("868402694901") + tamano(texto.size()) +
           QByteArray::fromHex("928484840c4e5344696374696f6e61727900958401690086"
                               "86");
}

QString palabras(const QByteArray &archivo)
{
    const auto leido = TextoConAtributos::leer(archivo);
    return leido ? QString::fromUtf8(leido->texto) : u"(no es)"_s;
}

} // namespace

class PruebaTextoConAtributos : public QObject
{
    Q_OBJECT

private slots:
    void mencionEnMedio();
    void adjuntoYPalabra();
    void textos_data();
    void textos();
    void cortadoEnCadaByte();
    void deLaOtraOrilla();
    void hostiles_data();
    void hostiles();
    void cadaByteCambiado();
};

void PruebaTextoConAtributos::mencionEnMedio()
{
    const auto leido = TextoConAtributos::leer(mencion);
    QVERIFY(leido && leido->entero);
    QCOMPARE(leido->texto, QByteArrayView("Hola Ana!"));
    QCOMPARE(leido->tramos.size(), 3U);
    QCOMPARE(leido->tramos[0].largo, 5U);
    QCOMPARE(leido->tramos[1].largo, 3U);
    QCOMPARE(leido->tramos[2].largo, 1U);
    QCOMPARE(leido->tramos[2].atributos, leido->tramos[0].atributos);
    const auto &suyos = leido->atributos[leido->tramos[1].atributos];
    QCOMPARE(suyos.size(), 2U);
    QCOMPARE(suyos[0].nombre, QByteArrayView("__kIMMentionConfirmedMention"));
    QCOMPARE(suyos[0].valor.bytes, QByteArrayView("+34600000001"));
    QCOMPARE(suyos[1].nombre, QByteArrayView("__kIMMessagePartAttributeName"));
    QCOMPARE(suyos[1].valor.clase, ValorArchivado::Entero);
    QCOMPARE(suyos[1].valor.entero, 0);
}

void PruebaTextoConAtributos::adjuntoYPalabra()
{
    const auto leido = TextoConAtributos::leer(adjunto);
    QVERIFY(leido && leido->entero);
    QCOMPARE(QString::fromUtf8(leido->texto), u"\uFFFCMira"_s);
    QCOMPARE(leido->tramos.size(), 2U);
    const auto &primero = leido->atributos[leido->tramos[0].atributos];
    QCOMPARE(primero[0].valor.bytes, QByteArrayView("at_0_5E2C0B1A-0000-4000-8000-000000000001"));
    const auto &segundo = leido->atributos[leido->tramos[1].atributos];
    QCOMPARE(segundo[0].nombre, QByteArrayView("__kIMMessagePartAttributeName"));
    QCOMPARE(segundo[0].valor.entero, 1);
}

void PruebaTextoConAtributos::textos_data()
{
    QTest::addColumn<QString>("texto");
    QTest::newRow("one byte of length") << u"x"_s.repeated(127);
    QTest::newRow("two bytes of length") << u"x"_s.repeated(128);
    QTest::newRow("letters of two bytes") << u"ñ"_s.repeated(100);
    QTest::newRow("more than a signed two bytes hold") << u"x"_s.repeated(40'000);
    QTest::newRow("four bytes of length") << u"x"_s.repeated(70'000);
    QTest::newRow("signs beyond the first plane") << u"Sí 🏔️ 𝖍"_s;
    QTest::newRow("what a search for bytes would stop at") << u"a + b \u0001+ \u0086i i\u0084"_s;
}

void PruebaTextoConAtributos::textos()
{
    QFETCH(const QString, texto);
    const auto archivo = sencillo(texto);
    const auto leido = TextoConAtributos::leer(archivo);
    QVERIFY(leido && leido->entero);
    QCOMPARE(QString::fromUtf8(leido->texto), texto);
    QCOMPARE(leido->tramos.size(), 1U);
    QCOMPARE(leido->tramos[0].largo, static_cast<quint64>(texto.size()));
    // A message that was taken back keeps a body of nothing.
    const auto vacio = TextoConAtributos::leer(mutableConTexto + QByteArray::fromHex("008686"));
    QVERIFY(vacio && vacio->entero && vacio->texto.isEmpty() && vacio->tramos.empty());
}

void PruebaTextoConAtributos::cortadoEnCadaByte()
{
    // What is cut behind the words still has them, and says that it was cut.
    for (const auto &[archivo, texto] : {std::pair(mencion, u"Hola Ana!"_s), std::pair(adjunto, u"\uFFFCMira"_s)}) {
        const auto finDelTexto = mutableConTexto.size() + 1 + texto.toUtf8().size() + 1;
        for (qsizetype i = 0; i < archivo.size(); ++i) {
            const auto cortado = archivo.first(i);
            const auto leido = TextoConAtributos::leer(cortado);
            QCOMPARE(leido.has_value(), i >= finDelTexto);
            QVERIFY(!leido || (!leido->entero && QString::fromUtf8(leido->texto) == texto));
        }
    }
}

void PruebaTextoConAtributos::deLaOtraOrilla()
{
    auto archivo = sencillo(u"ñ"_s.repeated(100));
    archivo.replace("streamtyped\x81\xe8\x03"_ba, "typedstream\x81\x03\xe8"_ba);
    archivo.replace(QByteArray::fromHex("81c800"), QByteArray::fromHex("8100c8"));
    QCOMPARE(palabras(archivo), u"ñ"_s.repeated(100));
}

void PruebaTextoConAtributos::hostiles_data()
{
    QTest::addColumn<QByteArray>("archivo");
    const QByteArray no;
    QTest::newRow("nothing") << no;
    QTest::newRow("another header") << QByteArray("bplist00");
    QTest::newRow("a length past the end") << mutableConTexto + QByteArray::fromHex("7f") + "corto";
    QTest::newRow("a length of four thousand millions") << mutableConTexto + QByteArray::fromHex("82ffffffff") + "x";
    QTest::newRow("a length below nothing") << mutableConTexto + QByteArray::fromHex("87ffffffffffffffff") + "x";
    QTest::newRow("a text that points past the table") << mutableConTexto.chopped(3) + QByteArray::fromHex("ff");
    QTest::newRow("a root that is no text") << uno + QByteArray::fromHex("848484084e534f626a65637400 8586");
    // Each "@" opens an object in the one before.
    QTest::newRow("objects one in another")
        << uno + QByteArray::fromHex("848484054e53446174610085") + QByteArray::fromHex("928484ff00").repeated(70'000);
    QTest::newRow("a class above itself") << uno + QByteArray::fromHex("848484084e534f626a6563740093");
    const auto conTipo = [](const QByteArray &tipo) {
        return mutableConTexto.chopped(3) + QByteArray::fromHex("84") + tamano(tipo.size()) + tipo;
    };
    QTest::newRow("a series of nothings") << conTipo("[999999999999999999999{x=}]");
    QTest::newRow("series of series of nothings") << conTipo("[9999[9999[9999[9999{x=}]]]]") + QByteArray(20'000, '\0');
    QTest::newRow("brackets that never close") << conTipo(QByteArray(200, '['));
    QTest::newRow("brackets in brackets")
        << conTipo(QByteArray("[1").repeated(80) + 'i' + QByteArray("]").repeated(80));
    QTest::newRow("an unknown type") << conTipo("?");
    // A long type used over and over, each time by one byte.
    QTest::newRow("much ado") << conTipo("{" + QByteArray(250, 'a') + "=}") + QByteArray(1'000'000, '\x99');
}

void PruebaTextoConAtributos::hostiles()
{
    QFETCH(const QByteArray, archivo);
    QCOMPARE(palabras(archivo), u"(no es)"_s);
}

void PruebaTextoConAtributos::cadaByteCambiado()
{
    // Whatever one byte becomes, the reader ends, within the archive.
    auto archivo = mencion;
    for (qsizetype i = 0; i < archivo.size(); ++i) {
        const auto suyo = archivo[i];
        for (int otro = 0; otro < 256; ++otro) {
            archivo[i] = static_cast<char>(otro);
            const auto leido = TextoConAtributos::leer(archivo);
            QVERIFY(!leido || leido->texto.size() <= archivo.size());
        }
        archivo[i] = suyo;
    }
}

QTEST_GUILESS_MAIN(PruebaTextoConAtributos)
#include "PruebaTextoConAtributos.moc"
