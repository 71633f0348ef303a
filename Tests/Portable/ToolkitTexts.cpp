#include <QByteArray>
#include <QMetaType>

/// The toolkit is built with the system's standard library; what it gives in types of another one
/// stands here.
std::string QByteArray::toStdString() const {
  return {constData(), static_cast<std::size_t>(size())};
}

QByteArray QByteArray::fromStdString(const std::string& text) {
  return {text.data(), static_cast<qsizetype>(text.size())};
}

/// Lists as variants are not converted there.
bool QMetaType::registerConverterFunction(const ConverterFunction&, QMetaType, QMetaType) {
  return false;
}

bool QMetaType::registerMutableViewFunction(const MutableViewFunction&, QMetaType, QMetaType) {
  return false;
}
