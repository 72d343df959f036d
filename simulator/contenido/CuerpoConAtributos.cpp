#include "contenido/CuerpoConAtributos.h"

namespace simulado
{

/// typedstream writes a small whole number in one byte, larger ones after the marks 0x81 (16 bits) and 0x82 (32 bits).
static QByteArray numero(qsizetype n)
{
    const auto v = static_cast<quint32>(n);
    if (v < 0x80)
        return QByteArray(1, static_cast<char>(v));
    QByteArray salida(1, v < 0x8000 ? '\x81' : '\x82');
    for (int i = 0; i < (v < 0x8000 ? 2 : 4); ++i)
        salida += static_cast<char>((v >> (8 * i)) & 0xff);
    return salida;
}

QByteArray cuerpoConAtributos(const QString &texto)
{
    const auto utf8 = texto.toUtf8();
    return QByteArray::fromHex("040b") + "streamtyped" + QByteArray::fromHex("81e803840140848484") + "\x12" +
           "NSAttributedString" + QByteArray::fromHex("008484") + "\x08" + "NSObject" +
           QByteArray::fromHex("008592848484") + "\x08" + "NSString" + QByteArray::fromHex("019484012b") +
           numero(utf8.size()) + utf8 + QByteArray::fromHex("868402694901") + numero(texto.size()) +
           QByteArray::fromHex("92848484") + "\x0c" + "NSDictionary" + QByteArray::fromHex("00948401690192849696") +
           "\x1d" + "__kIMMessagePartAttributeName" + QByteArray::fromHex("8692848484") + "\x08" + "NSNumber" +
           QByteArray::fromHex("008484") + "\x07" + "NSValue" + QByteArray::fromHex("009484012a84999900868686");
}

QByteArray cuerpoConMencion(const QString &texto, const QByteArray &quien)
{
    const auto h = [](const char *hexadecimal) {
        return QByteArray::fromHex(hexadecimal);
    };
    const auto con = [](const QByteArray &nombre) {
        return numero(nombre.size()) + nombre;
    };
    const auto utf8 = texto.toUtf8();
    const auto desde = texto.indexOf(u' ') + 1;
    const auto palabra = texto.indexOf(u' ', desde) - desde;
    const bool varios = desde > 0 && palabra > 0;
    auto cuerpo = h("040b") + "streamtyped" + h("81e803840140848484") + con("NSMutableAttributedString") + h("008484") +
                  con("NSAttributedString") + h("008484") + con("NSObject") + h("0085928484") + h("84") +
                  con("NSMutableString") + h("018484") + con("NSString") + h("019584012b") + con(utf8) +
                  h("868402694901") + numero(varios ? desde : texto.size()) + h("92848484") + con("NSDictionary") +
                  h("00958401690192849898") + con("__kIMMessagePartAttributeName") + h("8692848484") + con("NSNumber") +
                  h("008484") + con("NSValue") + h("009584012a849b9b008686");
    if (varios)
        cuerpo += h("9902") + numero(palabra) + h("92849a9b0292849898") + con("__kIMMentionConfirmedMention") +
                  h("8692849898") + con(quien) + h("86929b929c869901") + numero(texto.size() - desde - palabra);
    return cuerpo + h("86");
}

} // namespace simulado
