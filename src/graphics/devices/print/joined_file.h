#pragma once
/// A file that a drawing is appended to: of a finished one the end is taken off, so that the drawing joins
/// what stands before it, and comes again behind the drawing.

#include <cstdint>
#include <string>
#include <string_view>

#include "graphics/devices/print/number_writer.h"
#include "graphics/devices/print/setup_file.h"

/// What stands around drawings of one kind.
struct FileEnds {
    std::string begin, end;
    const char *kind;            ///< of file, in messages
    bool joins_any_file = false; ///< what follows the end of another program's file is drawn all the same
};

class JoinedFile {
public:
    /// Opens an output; one to append to is created where there is nothing yet, and joined where it begins
    /// and ends like this kind. Not open after a message.
    OutputFile open(PrintOutput output, FileEnds ends, const char *operation);
    /// Closes what a writer has written. -1 after a message, and with the file as it was before, when it is
    /// not whole.
    [[nodiscard]] int close(PrintWriter &out, const char *operation) const;
    void abandon(PrintWriter &out) const;

    /// The drawing shares the picture of a finished file.
    [[nodiscard]] bool is_joined() const { return kind_ == Kind::joined; }
    /// The drawing follows what is not of this kind, without beginning and end.
    [[nodiscard]] bool is_bare() const { return kind_ == Kind::bare; }
    [[nodiscard]] bool begins() const { return kind_ == Kind::alone; }
    [[nodiscard]] const std::string &name() const { return name_; }
    [[nodiscard]] const FileEnds &ends() const { return ends_; }

private:
    enum class Kind { alone, joined, bare };
    [[nodiscard]] bool join(PrintOutput &output, const char *operation);
    void put_back() const;

    Kind kind_ = Kind::alone;
    std::string name_;
    FileEnds ends_{};
    std::int64_t kept_ = 0; ///< bytes of a joined file before the drawing
};
