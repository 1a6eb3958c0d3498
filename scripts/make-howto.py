import sys
def esc(s):
    out=[]
    for ch in s:
        o=ord(ch)
        if ch in '\\{}': out.append('\\'+ch)
        elif o<128: out.append(ch)
        else: out.append('\\u%d?' % o)
    return ''.join(out)
P=[]
def h(t): P.append('\\pard\\sb160\\sa80 {\\b\\fs26 %s}\\par\n' % esc(t))
def p(*runs):
    s='\\pard\\sa80 '
    for r in runs:
        if isinstance(r,str): s+=esc(r)
        else:
            fmt,t=r; s+='{'+fmt+' '+esc(t)+'}'
    P.append(s+'\\par\n')
P.append('\\pard\\sa160 {\\b\\fs32 How to use Tallyvane}\\par\n')
p('Tallyvane shows what changed between two versions of a document: plain text and source code, RTF, Word (DOCX, DOC), OpenDocument, Excel, PDF and HTML.')
h('1. Choose the two files')
p('Pick the ',('\\b','Original'),' file in the upper left box and the ',('\\b','Modified'),' file in the upper right box, either by typing a path, choosing one from the drop-down list of recent files, or with the browse button beside each box. The two documents appear in the editors at the top.')
h('2. Compare')
p('Press ',('\\b','F5'),' (or the Refresh button) to compare. The result appears in the lower panes. Press ',('\\b','Esc'),' in the wait window, click the Abort button or click the status bar to stop a long comparison.')
h('3. Read the differences')
p('By default ',('\\cf2\\b\\ul','added text is green and underlined'),', ',('\\cf3\\b\\strike','deleted text is blue and struck through'),', and in changed paragraphs only the words that differ are marked: ',('\\cf4\\b\\strike','old words'),' on the Original side and ',('\\cf4\\b\\ul','new words'),' on the Modified side. You can choose other formats on the Compare Options tab.')
p('Press ',('\\b','F6'),' to switch between the side-by-side view and the all-in-one view, which merges both documents into one.')
h('4. Walk through the differences')
p(('\\b','F7'),' goes to the next difference, ',('\\b','Shift+F7'),' to the previous one, ',('\\b','Ctrl+Shift+F7'),' to the first and ',('\\b','Ctrl+F7'),' to the last. ',('\\b','F4'),' goes to a difference by number, and the drop-down list above the panes lists them all. The buttons below the panes show only additions, only deletions or only changes.')
h('5. Reports')
p('Press ',('\\b','F2'),' to write a report of the comparison (HTML, text or comma delimited, as chosen on the Report Options tab) and open it.')
h('6. From the command line')
p('Run ',('\\f1','tallyvane ORIGINAL MODIFIED'),' to open a comparison, or ',('\\f1','tallyvane -M old.docx -S new.docx -T report.html -X'),' to write a report without a window. ',('\\f1','tallyvane --help'),' lists every switch.')
head='{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss Liberation Sans;}{\\f1\\fmodern Liberation Mono;}}{\\colortbl;\\red0\\green0\\blue0;\\red0\\green128\\blue0;\\red0\\green0\\blue255;\\red255\\green0\\blue0;}\n\\f0\\fs20\n'
open(sys.argv[1],'w').write(head+''.join(P)+'}\n')
