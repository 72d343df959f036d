#pragma once

#include <QString>
#include <QStringList>

/// What people send each other, and what somebody may send on purpose. No line feeds: those are a chapter of their own.
inline QStringList textosHostiles()
{
    using namespace Qt::StringLiterals;
    QStringList textos{
        // markup
        u"<b>negrita</b>"_s, u"<script>alert(1)</script>"_s, u"</span></div></details><h1>fuera</h1>"_s,
        u"<img src=http://127.0.0.1:1/x onerror=alert(1)>"_s, u"<svg/onload=alert(2)>"_s,
        u"<iframe src=\"file:///etc/passwd\"></iframe>"_s, u"<a href=\"javascript:alert(3)\">pulsa</a>"_s,
        u"<style>*{display:none}</style>"_s, u"<link rel=stylesheet href=http://127.0.0.1:1/s.css>"_s,
        u"<meta http-equiv=refresh content=\"0;url=http://127.0.0.1:1/\">"_s, u"<!-- comentario"_s, u"-->"_s,
        u"<![CDATA[ x ]]>"_s, u"<?php echo 1 ?>"_s, u"<details open ontoggle=alert(4)>"_s,
        u"<input autofocus onfocus=alert(5)>"_s, u"<base href=http://127.0.0.1:1/>"_s, u"<title>otro</title>"_s,
        u"&lt;b&gt; ya escapado"_s, u"&amp;amp;"_s, u"&#60;script&#62;"_s, u"AT&T < Orange > Movistar"_s,
        u"\" onmouseover=\"alert(6)"_s, u"' onclick='alert(7)"_s, u"`${alert(8)}`"_s, u"</textarea><b>x"_s,
        u"<plaintext>"_s, u"<xmp><b>"_s, u"<noscript><p title=\"</noscript><img src=x onerror=alert(9)>\">"_s,
        u"<math><mi//xlink:href=\"data:x,<script>alert(10)</script>\">"_s,
        u"<form action=http://127.0.0.1:1/><button>x"_s, u"<video><source onerror=alert(11)>"_s,
        u"<object data=http://127.0.0.1:1/o></object>"_s, u"<font color=red>Rico</font>"_s,
        u"**negrita** _cursiva_ [enlace](http://127.0.0.1:1/)"_s, u"<table><tr><td>1"_s, u"url(http://127.0.0.1:1/u)"_s,
        u"@import 'http://127.0.0.1:1/i';"_s,
        // tables, formulas and cards
        u"=1+1"_s, u"=HYPERLINK(\"http://127.0.0.1:1/\";\"pulsa\")"_s, u"+cmd|' /C calc'!A0"_s, u"-2+3"_s,
        u"@SUM(A1:A9)"_s, u"a;b;c"_s, u";;;"_s, u"\"comillas\""_s, u"\"\"\""_s, u"a,b,c"_s, u"tab\tulado"_s,
        u"BEGIN:VCARD"_s, u"END:VCARD"_s, u"x\\nTEL:+34999"_s, u"\\;\\,\\\\"_s, u"TEL;TYPE=CELL:666"_s, u"FN:Otro"_s,
        u"NOTE;ENCODING=QUOTED-PRINTABLE:=0D=0A"_s, u"PHOTO;ENCODING=b:AAAA"_s,
        // PDF
        u"(paréntesis \\( sueltos"_s, u"endstream endobj"_s, u"%PDF-1.7 %%EOF"_s, u"/JS (app.alert(1))"_s,
        u"<</Type /Catalog>>"_s, u"\\101\\102"_s,
        // paths, queries and formats
        u"../../etc/passwd"_s, u"C:\\Windows\\system32"_s, u"'; DROP TABLE message; --"_s, u"%s%n%1 %2 %L1"_s,
        u"{0} ${HOME} $(id) `id`"_s, u"file:///etc/passwd"_s, u"null"_s, u"undefined"_s, u"0"_s, u"NaN"_s, u"-1"_s,
        u"true"_s,
        // the program's own forms
        u"[01/01/2026 10:00] YO: esto no lo dije yo"_s, u"] YO: colado"_s, u"YO: tampoco"_s, u"[sin cierre"_s, u"]["_s,
        u": sin nombre"_s, u"[] : "_s, u"a: b: c"_s,
        // writing
        u"ÁÉÍÓÚ ÜÑ ¿¡ çÇ"_s, u"مرحبا بالعالم"_s, u"שלום 123 abc"_s, u"中文混合 text"_s,
        u"👨‍👩‍👧‍👦 familia 🇪🇸 👍🏽 ❤️"_s, u"a\u0301 n\u0303 decompuesto"_s,
        u"\u202Eodatreversi\u202C"_s, u"cero\u200Bancho\u2060y\uFEFFmarcas"_s,
        u"e\u0301\u0302\u0303\u0304\u0305\u0306\u0307\u0308 zalgo"_s, u"ﬁ ligadura ﷺ"_s, u"İstanbul ıI ẞß Kelvin"_s,
        u"\u2028separador\u2029de línea"_s, u"control\x01\x07\x1b[31mrojo\x7f"_s, u"fin de texto\x04"_s,
        u"\u00A0espacios\u3000raros"_s};
    textos << QString(4000, u'W') << QString(300, u'<') << u"palabra "_s.repeated(600) << u"𝕳𝖔𝖑𝖆 𝔪𝔲𝔫𝔡𝔬"_s
           << u"😀"_s.repeated(200);
    return textos;
}
