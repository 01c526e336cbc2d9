# Gives the paragraphs of comments that begin with one of these words a heading in the documentation site.
# The lines stay as many as they are (that is what \ilinebr is for), so that warnings name the right one.
s,^( *///[^<].*[.;]) (Threads|Errors|Ownership|ABI): ,\1 \\ilinebr @par \2 \\ilinebr ,
s,^( *///) ((Ownership|Threads|Errors|ABI|Nesting|Cost|Shape|Elements|Descriptors|Reading|Removing columns)( and threads|\, threads)?): ,\1 @par \2 \\ilinebr ,
