#pragma once
// Result codes every Lexiform operation answers with. The viewer turns them
// into messages, so the numbers are fixed.

class QString;

namespace lexiform {

enum Result : int {
    Ok = 0,
    PathEmpty = -2,          // a source or target path is empty
    SourceInvalid = -3,      // the source could not be read as its kind of document
    ConversionFailed = -4,   // reading worked, writing or processing did not
    InvalidSheet = -5,       // a sheet, row or column list names nothing usable
    SameFile = -6,           // source and target are one file
    ProgramMissing = -100,   // the external program the conversion needs is absent
};

// Results of SpecialProcessing.
enum ProcessResult : int {
    SpOk = 0,
    SpCannotOpenTarget = -2,
    SpCannotOpenFile = -3,
    SpTargetInvalid = -4,
    SpExtraParamInvalid = -5,
    SpUnknownProcess = -10,
};

// Process identifiers of SpecialProcessing.
enum ProcessId : int {
    SP_CONCATENATE_ALL = 1,
    SP_CROP_CSV_TO_COLUMNS = 4,
    SP_CROP_CSV_TO_ROWS = 5,
    SP_REMOVE_BLANK_LINES_CSV = 6,
    SP_PAD_CSV_FILE_WITH_SPACES = 7,
    SP_TRIM_CSV_FILE = 8,
    SP_REMOVE_BLANK_LINES = 10,
};

// Conversion types of ConvertDocument.
enum ConversionType : int {
    TypeWordDocument = 0,
    TypePlainText = 2,
    TypeRichText = 6,
    TypeHtml = 8,
};

// Bounds on what a reader will unpack or build, so that a hostile file
// (a zip bomb, a sheet claiming a million repeated cells) fails with a result
// code instead of exhausting memory.
struct ReadLimits {
    long long maxEntryBytes = 1LL << 30;     // decompressed bytes of one zip member
    long long maxCells = 100'000'000;        // cells a sheet may grow to
    // All members of a package together may decompress to this allowance
    // plus this many times the package's own size. Real documents stay far
    // below (their XML compresses five to twenty times); a package built to
    // unpack to gigabytes is refused before its text is ever held in memory,
    // and memory stays within a small multiple of the file's size.
    long long packageAllowanceBytes = 64LL << 20;
    long long packageRatio = 16;
    // Where a reader says which limit refused a file, when one did.
    QString* limitReason = nullptr;
};

} // namespace lexiform
