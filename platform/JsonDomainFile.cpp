#include "platform/DomainFiles_p.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <cmath>
#include <limits>

namespace pde::domainfiles {

namespace {

// Dictionaries and lists nest this deep at most, both ways, so that a
// hostile file cannot exhaust the stack and every write reads back.
constexpr int kMaxDepth = 32;

std::optional<QJsonValue> toJson(const QVariant &value, int depth)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return QJsonValue(value.toBool());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        return QJsonValue(value.toLongLong());
    case QMetaType::ULongLong:
        if (value.toULongLong() > quint64(std::numeric_limits<qint64>::max()))
            return std::nullopt;
        return QJsonValue(value.toLongLong());
    case QMetaType::Double:
        if (!std::isfinite(value.toDouble()))
            return std::nullopt;
        return QJsonValue(value.toDouble());
    case QMetaType::QString:
        return QJsonValue(value.toString());
    case QMetaType::QVariantMap: {
        if (depth >= kMaxDepth)
            return std::nullopt;
        QJsonObject object;
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            std::optional<QJsonValue> child = toJson(*it, depth + 1);
            if (!child)
                return std::nullopt;
            object.insert(it.key(), *child);
        }
        return object;
    }
    case QMetaType::QVariantList:
    case QMetaType::QStringList: {
        if (depth >= kMaxDepth)
            return std::nullopt;
        QJsonArray array;
        for (const QVariant &item : value.toList()) {
            std::optional<QJsonValue> child = toJson(item, depth + 1);
            if (!child)
                return std::nullopt;
            array.append(*child);
        }
        return array;
    }
    default:
        return std::nullopt;
    }
}

// A null is never written, so a file holding one is not ours.
std::optional<QVariant> fromJson(const QJsonValue &value, int depth)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return QVariant(value.toBool());
    case QJsonValue::Double: {
        // Whole numbers come as qlonglong, others as double.
        const QVariant number = value.toVariant();
        if (number.typeId() == QMetaType::LongLong) {
            const qint64 whole = number.toLongLong();
            if (whole >= std::numeric_limits<qint32>::min() && whole <= std::numeric_limits<qint32>::max())
                return QVariant(int(whole));
            return number;
        }
        if (!std::isfinite(value.toDouble()))
            return std::nullopt;
        return QVariant(value.toDouble());
    }
    case QJsonValue::String:
        return QVariant(value.toString());
    case QJsonValue::Object: {
        if (depth >= kMaxDepth)
            return std::nullopt;
        QVariantMap map;
        const QJsonObject object = value.toObject();
        for (auto it = object.begin(); it != object.end(); ++it) {
            std::optional<QVariant> child = fromJson(it.value(), depth + 1);
            if (!child)
                return std::nullopt;
            map.insert(it.key(), *child);
        }
        return map;
    }
    case QJsonValue::Array: {
        if (depth >= kMaxDepth)
            return std::nullopt;
        QVariantList list;
        for (const QJsonValue &item : value.toArray()) {
            std::optional<QVariant> child = fromJson(item, depth + 1);
            if (!child)
                return std::nullopt;
            list.append(*child);
        }
        return list;
    }
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<QByteArray> encodeJson(const QVariantMap &domain)
{
    const std::optional<QJsonValue> object = toJson(domain, 0);
    if (!object)
        return std::nullopt;
    return QJsonDocument(object->toObject()).toJson(QJsonDocument::Indented);
}

std::optional<QVariantMap> readJson(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    const std::optional<QVariant> domain = fromJson(document.object(), 0);
    if (!domain)
        return std::nullopt;
    return domain->toMap();
}

} // namespace pde::domainfiles
