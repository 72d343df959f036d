#include "session/Dispositivo.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

const QHash<QString, QString> &nombresComerciales()
{
    static const QHash<QString, QString> nombres{
        {u"iPhone10,1"_s, u"iPhone 8"_s},
        {u"iPhone10,4"_s, u"iPhone 8"_s},
        {u"iPhone10,2"_s, u"iPhone 8 Plus"_s},
        {u"iPhone10,5"_s, u"iPhone 8 Plus"_s},
        {u"iPhone10,3"_s, u"iPhone X"_s},
        {u"iPhone10,6"_s, u"iPhone X"_s},
        {u"iPhone11,8"_s, u"iPhone XR"_s},
        {u"iPhone11,2"_s, u"iPhone XS"_s},
        {u"iPhone11,6"_s, u"iPhone XS Max"_s},
        {u"iPhone12,1"_s, u"iPhone 11"_s},
        {u"iPhone12,3"_s, u"iPhone 11 Pro"_s},
        {u"iPhone12,5"_s, u"iPhone 11 Pro Max"_s},
        {u"iPhone12,8"_s, u"iPhone SE (2.ª gen)"_s},
        {u"iPhone13,1"_s, u"iPhone 12 mini"_s},
        {u"iPhone13,2"_s, u"iPhone 12"_s},
        {u"iPhone13,3"_s, u"iPhone 12 Pro"_s},
        {u"iPhone13,4"_s, u"iPhone 12 Pro Max"_s},
        {u"iPhone14,4"_s, u"iPhone 13 mini"_s},
        {u"iPhone14,5"_s, u"iPhone 13"_s},
        {u"iPhone14,2"_s, u"iPhone 13 Pro"_s},
        {u"iPhone14,3"_s, u"iPhone 13 Pro Max"_s},
        {u"iPhone14,6"_s, u"iPhone SE (3.ª gen)"_s},
        {u"iPhone14,7"_s, u"iPhone 14"_s},
        {u"iPhone14,8"_s, u"iPhone 14 Plus"_s},
        {u"iPhone15,2"_s, u"iPhone 14 Pro"_s},
        {u"iPhone15,3"_s, u"iPhone 14 Pro Max"_s},
        {u"iPhone15,4"_s, u"iPhone 15"_s},
        {u"iPhone15,5"_s, u"iPhone 15 Plus"_s},
        {u"iPhone16,1"_s, u"iPhone 15 Pro"_s},
        {u"iPhone16,2"_s, u"iPhone 15 Pro Max"_s},
        {u"iPhone17,3"_s, u"iPhone 16"_s},
        {u"iPhone17,4"_s, u"iPhone 16 Plus"_s},
        {u"iPhone17,1"_s, u"iPhone 16 Pro"_s},
        {u"iPhone17,2"_s, u"iPhone 16 Pro Max"_s},
        {u"iPhone17,5"_s, u"iPhone 16e"_s},
        {u"iPhone18,3"_s, u"iPhone 17"_s},
        {u"iPhone18,1"_s, u"iPhone 17 Pro"_s},
        {u"iPhone18,2"_s, u"iPhone 17 Pro Max"_s},
    };
    return nombres;
}

} // namespace

QString Dispositivo::modelo() const
{
    return nombresComerciales().value(modeloCrudo, modeloCrudo);
}

} // namespace vellora
