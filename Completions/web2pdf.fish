# fish completion for web2pdf(1)

function __web2pdf_argument -a number
    test (count (commandline -opc)) -eq $number
end

complete -c web2pdf -f
complete -c web2pdf -n '__web2pdf_argument 1' -a screen -d 'One page as tall as the document'
complete -c web2pdf -n '__web2pdf_argument 1' -a print -d 'Sheets of the default paper'
complete -c web2pdf -n '__web2pdf_argument 2' -k -a '(__fish_complete_suffix .webarchive)'
complete -c web2pdf -n '__web2pdf_argument 3' -k -a '(__fish_complete_suffix .pdf)'
