#pragma once

#include "model/AppSettings.h"

namespace vormel {

/// Calls the function now and each time the language is set, for as long as `context` lives. The settings must outlive
/// that.
template <typename Function>
void followLanguage(const QObject* context, const AppSettings& settings, Function function)
{
    QObject::connect(&settings, &AppSettings::languageSet, context, function);
    function();
}

/// Gives the widget, or whatever has such a setter, a text in the language of the settings, for as long as it lives.
template <typename Object, typename Base>
void bindText(Object* object, void (Base::*setter)(const QString& text), const AppSettings& settings,
              const TextPair& text)
{
    followLanguage(object, settings,
                   [object, setter, text, &settings] { (object->*setter)(text.in(settings.language.value())); });
}

} // namespace vormel
