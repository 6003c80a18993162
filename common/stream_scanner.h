#ifndef QUILP_STREAM_SCANNER_H
#define QUILP_STREAM_SCANNER_H

// A flex C++ scanner whose input failing to read (a directory, an I/O error)
// is the end of its input, so that the parse fails on it as on any truncated
// file; flex's own reader would end the process instead.
template <class FlexLexerBase>
class stream_scanner : public FlexLexerBase {
public:
    using FlexLexerBase::FlexLexerBase;

protected:
    int LexerInput(char* buf, int max_size) override
    {
        if (this->yyin.eof() || this->yyin.fail())
            return 0;
        this->yyin.read(buf, max_size);
        return static_cast<int>(this->yyin.gcount());
    }
};

#endif
