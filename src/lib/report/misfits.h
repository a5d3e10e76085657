#pragma once
/// Tells the user of words that mean nothing where they stand. Each sentence is told once in a run, at level
/// kWarn, and names the option, the word, and the known word that comes nearest.

#include <span>
#include <string>
#include <string_view>
#include <vector>

using KnownWords = std::span<const std::string_view>;

/// `<option>: "<word>" is not known, the nearest is "<nearest>"`, and what becomes of it when `then` tells.
void WORD_unknown(std::string_view resource, std::string_view word, KnownWords known,
                  std::string_view then = {});
/// `<option>: "<word>" is not <wanted>`, as in "a number".
void WORD_not(std::string_view resource, std::string_view word, std::string_view wanted);
/// `<option>: <sentence>`.
void WORD_tell(std::string_view resource, std::string_view sentence);
/// Tells at once what waits.
void WORD_flush();
/// Forgets what was told, for another start.
void WORD_forget();

/// While one of these lives, sentences wait; they are told at its end, in their order. Words of settings are
/// decoded before it is known which messages the user wants to see.
class WordHold {
public:
    WordHold();
    WordHold(const WordHold &) = delete;
    WordHold &operator=(const WordHold &) = delete;
    ~WordHold();
};

/// True when the whole text, blanks at its sides aside, is a number; is a whole number.
[[nodiscard]] bool WORD_is_number(std::string_view text);
[[nodiscard]] bool WORD_is_integer(std::string_view text);
/// True when it is `least` to `most` numbers joined by `separator`.
[[nodiscard]] bool WORD_are_numbers(std::string_view text, std::size_t least, std::size_t most,
                                    char separator = ':');
